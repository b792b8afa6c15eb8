#pragma once

struct FileOperation;
class FileOperationWorker;

/** Runs the operation class of the record's type; nothing for a type without one. Worker's thread. */
void runOperationClass(FileOperationWorker &worker, const FileOperation &operation);
