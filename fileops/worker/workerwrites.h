#pragma once

#include <QtGlobal>

class FileOperationWorker;
class ForeignWrites;

/**
 * The worker's half of ForeignWrites: before its first change in a transaction it finds out whether another
 * program has written since the records were read, and after its commits it sees to it that the window does
 * not take them for another program's. Lives on the worker's thread.
 */
class WorkerWrites
{
public:
    WorkerWrites(FileOperationWorker &worker, ForeignWrites &window) : m_worker(worker), m_window(window) {}

    /** For a new connection, whose versions have nothing in common with those of the one before. */
    void connectionOpened() { m_isCurrent = false; }
    /** In a transaction that holds the write lock. The window tells of a no. */
    bool isCurrent();
    void aboutToCommit();
    void committed(bool isDone);
    void rolledBack();

private:
    bool readVersion(qint64 &version);

    FileOperationWorker &m_worker;
    ForeignWrites &m_window;
    qint64 m_version = 0; ///< up to which nobody but this program has written
    bool m_isCurrent = false;
};
