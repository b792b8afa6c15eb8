#pragma once

#include "db/loading/filesource.h"

#include <QMutex>
#include <QThread>
#include <QWaitCondition>

#include <deque>

/**
 * Reads all files on a thread of its own and hands them on in batches, of which a few wait at a time: the
 * memory that a reading takes does not grow with the database. Made, used and deleted on one other thread.
 */
class FileLoader : public QThread
{
    Q_OBJECT

public:
    explicit FileLoader(std::unique_ptr<FileSource> source);
    /** Ends the reading and waits for that. */
    ~FileLoader() override;

    /** The next batch; false when none is there yet, and at the end. */
    bool take(FileBatch &batch);
    /** The same, but waits for it: false at the end only. */
    bool waitFor(FileBatch &batch);
    /** Whether all that could be read was taken. */
    bool isOver();

    /** After the end; an invalid one when all was read, or when it was not tried. */
    const QSqlError &error() const { return m_source->error(); }
    bool isConnectionLost() const { return m_source->isConnectionLost(); }
    /** After the end: whether all files were handed on. */
    bool isWhole() const { return m_isWhole; }

signals:
    /** There is something to take, or nothing will come any more. */
    void arrived();

protected:
    void run() override;

private:
    bool put(FileBatch &&batch);
    bool takeLocked(FileBatch &batch);

    const std::unique_ptr<FileSource> m_source;
    bool m_isWhole = false;

    QMutex m_mutex; ///< of what follows
    QWaitCondition m_changed;
    std::deque<FileBatch> m_waiting;
    bool m_isEnded = false;
    bool m_isUnwanted = false;
};
