#pragma once

#include <QByteArray>
#include <QStringList>
#include <QVector>

class FileOperationWorker;

/**
 * Tells by their bytes whether contents are equal, each side read once from start to end and a slice at a
 * time in memory. Worker's thread. A stop or cancel ends every call with "different".
 */
class FileComparison
{
public:
    enum Result { Same, Different, Unreadable };

    explicit FileComparison(FileOperationWorker &worker);

    Result compareFiles(const QString &leftPath, const QString &rightPath);
    /** A file with the contents of an internal file, whose size is the one recorded. */
    Result compareWithBlocks(const QString &path, qint64 storageId, qint64 size);

    /**
     * Parts files of one size into groups of equal contents: indices into `paths`, in their order, groups in
     * the order of their first members. What cannot be read joins the first group. Small contents are held
     * meanwhile, so that each file is read once.
     */
    QVector<QVector<int>> split(const QStringList &paths, qint64 size);

private:
    struct Group;

    bool readWhole(const QString &path, qint64 size, QByteArray &content);

    FileOperationWorker &m_worker;
    QByteArray m_left;
};
