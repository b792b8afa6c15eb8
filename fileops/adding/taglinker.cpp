#include "fileops/adding/taglinker.h"

#include "fileops/worker/fileoperationqueries.h"

#include <QSet>

#include <algorithm>

namespace {

constexpr int pairsInStatement = 100;

} // namespace

QVector<qint64> TagLinker::sortedOnce(QVector<qint64> ids)
{
    std::sort(ids.begin(), ids.end());
    ids.erase(std::unique(ids.begin(), ids.end()), ids.end());
    return ids;
}

QVector<qint64> TagLinker::idsFor(const QStringList &names, const QHash<QString, qint64> &idsByName,
                                  const QVector<qint64> &others)
{
    QVector<qint64> ids;
    for (const QString &name : names) {
        const qint64 id = idsByName.value(name);
        if (id > 0)
            ids.append(id);
    }
    return sortedOnce(ids + others);
}

bool TagLinker::linkNewFile(qint64 fileId, const QVector<qint64> &tagIds)
{
    for (int from = 0; from < tagIds.size(); from += pairsInStatement) {
        const int count = qMin(pairsInStatement, tagIds.size() - from);
        if (!insertPairs(fileId, tagIds.constData() + from, count))
            return false;
    }
    return true;
}

bool TagLinker::linkFile(qint64 fileId, const QVector<qint64> &tagIds, QVector<qint64> *linked)
{
    if (linked)
        linked->clear();
    if (tagIds.isEmpty())
        return true;
    TableData table;
    if (!m_queries.runFast(QStringLiteral("SELECT tag_id FROM file_tag WHERE file_id=?"), {fileId}, table))
        return false;
    // Asked for first, as what was new is to be told.
    QSet<qint64> existing;
    for (const TableRowData *row : qAsConst(table))
        existing.insert(row->at(0).toLongLong());
    freeRows(table);
    QVector<qint64> missing;
    for (const qint64 id : sortedOnce(tagIds)) {
        if (!existing.contains(id))
            missing.append(id);
    }
    if (!linkNewFile(fileId, missing))
        return false;
    if (linked)
        *linked = missing;
    return true;
}

bool TagLinker::insertPairs(qint64 fileId, const qint64 *tagIds, int count)
{
    QVariantList values;
    values.reserve(2 * count);
    for (int i = 0; i < count; ++i) {
        values.append(fileId);
        values.append(tagIds[i]);
    }
    return m_queries.insertRows(QStringLiteral("INSERT INTO file_tag (file_id,tag_id)"), 2, values);
}
