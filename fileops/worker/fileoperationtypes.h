#pragma once

/**
 * Registers the types that file operations send across threads, those of the database layer that the worker
 * emits included. Call it before the first provider starts; further calls do no harm.
 */
void registerFileOperationTypes();
