#pragma once

#include <QHash>
#include <QStringList>
#include <QVector>

class FileOperationQueries;

/** Links tags to one file at a time within the running transaction of the worker. */
class TagLinker
{
public:
    explicit TagLinker(FileOperationQueries &queries) : m_queries(queries) {}

    /** For a file that has no tag yet; a pair that exists makes it fail. No tags succeed at once. */
    bool linkNewFile(qint64 fileId, const QVector<qint64> &tagIds);
    /** Leaves out the pairs that exist; `linked` becomes the others. */
    bool linkFile(qint64 fileId, const QVector<qint64> &tagIds, QVector<qint64> *linked = nullptr);

    /** Ascending, each id once. */
    static QVector<qint64> sortedOnce(QVector<qint64> ids);
    /** The ids of the names, as far as they have one, and the others, ascending and each once. */
    static QVector<qint64> idsFor(const QStringList &names, const QHash<QString, qint64> &idsByName,
                                  const QVector<qint64> &others);

private:
    bool insertPairs(qint64 fileId, const qint64 *tagIds, int count);

    FileOperationQueries &m_queries;
};
