#pragma once

#include "fileops/importing/importreport.h"
#include "fileops/importing/importsource.h"
#include "fileops/importing/importstatements.h"
#include "fileops/worker/progressthrottle.h"

class FileOperationWorker;

/** What the parts of one import share. Lives on the stack of the worker's thread for one run. */
class ImportRun
{
public:
    /** A source without contents is a shell: size and checksum alone decide what is equal there. */
    ImportRun(FileOperationWorker &worker, const ImportSource &source, bool isShell);

    /** Tells what is going on, and the percentage of the whole. */
    void tell(const QString &text, int percent);
    /** Throws when the import is to end: the question at the head of every long loop. */
    void stopIfEnded() const;

    FileOperationWorker &worker;
    const ImportSource &source;
    const bool isShell;
    ImportStatements statements;
    ImportReport report;

private:
    ProgressThrottle m_progress;
};
