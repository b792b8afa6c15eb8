#pragma once

#include <QHash>
#include <QObject>

class FileOperationWorker;

/**
 * When new contents of files were written into their records. A file that was changed before that, too, has
 * changed along with them and is no copy that came later, in whatever batch or check it is met. Of what was
 * written before the database was opened only the latest possible time is known, and on a server not even
 * that. It lives and dies with a worker. Worker's thread.
 */
class RefreshedContents : public QObject
{
    Q_OBJECT

public:
    /** To be called before the first check writes anything. */
    static RefreshedContents &of(FileOperationWorker &worker);

    void add(qint64 fileId);
    /** Whether the file at the path may have changed before that record was written: in doubt, it has. */
    bool mayBeOlder(qint64 refreshedId, const QString &path) const;

private:
    explicit RefreshedContents(FileOperationWorker &worker);
    /** Whether the contents are other ones than those with which the file was added. */
    bool hasChangedSinceAdded(qint64 fileId) const;

    FileOperationWorker &m_worker;
    qint64 m_lastWrite;            ///< of others and of earlier runs; milliseconds since 1970
    QHash<qint64, qint64> m_times; ///< milliseconds since 1970
};
