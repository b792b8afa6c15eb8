#include "core/tagging/tagwriter.h"

#include "db/sql/basedbprovider.h"
#include "db/sql/sqltext.h"

#include <algorithm>

namespace {
// A statement is over in a moment, so that a cancel is heard, and a server is asked few times.
constexpr int mostFiles = 5000;
constexpr int mostTags = 5000;
constexpr int mostPairs = 20000;
constexpr int rowsAtOnce = 512;

// By rising ids, which is the order of the key.
QString linkText(const QVector<qint64> &fileIds, const QVector<qint64> &tagIds)
{
    return SqlText::fill(QStringLiteral("INSERT INTO file_tag (file_id,tag_id) "
                                        "SELECT files.file_id,tags.tag_id FROM files CROSS JOIN tags "
                                        "WHERE files.file_id IN (%1) AND tags.tag_id IN (%2) "
                                        "ON CONFLICT DO NOTHING RETURNING file_id,tag_id;"),
                         {SqlText::idList(fileIds), SqlText::idList(tagIds)});
}

QString unlinkText(const QVector<qint64> &fileIds, const QVector<qint64> &tagIds)
{
    return SqlText::fill(QStringLiteral("DELETE FROM file_tag WHERE file_id IN (%1) AND tag_id IN (%2) "
                                        "RETURNING file_id,tag_id;"),
                         {SqlText::idList(fileIds), SqlText::idList(tagIds)});
}

template <class Use>
bool forEachPart(const QVector<qint64> &ids, int size, Use use)
{
    for (int begin = 0; begin < ids.size(); begin += size) {
        if (!use(ids.size() <= size ? ids : ids.mid(begin, size)))
            return false;
    }
    return true;
}
} // namespace

bool TagWriter::write(const TagChanges &changes, const Step &step)
{
    if (!writeAll(changes, &TagChange::linked, linkText, step) ||
        !writeAll(changes, &TagChange::unlinked, unlinkText, step))
        return false;
    for (TagChange &change : m_done) {
        std::sort(change.linked.begin(), change.linked.end());
        std::sort(change.unlinked.begin(), change.unlinked.end());
    }
    std::sort(m_done.begin(), m_done.end(),
              [](const TagChange &left, const TagChange &right) { return left.tagId < right.tagId; });
    return true;
}

bool TagWriter::writeAll(const TagChanges &changes, Files files, Statement statement, const Step &step)
{
    // Tags of the same files, which mostly share their list, go together.
    for (int from = 0; from < changes.size();) {
        const QVector<qint64> &fileIds = changes.at(from).*files;
        QVector<qint64> tagIds;
        while (from < changes.size() && changes.at(from).*files == fileIds)
            tagIds.append(changes.at(from++).tagId);
        if (!writeProduct(fileIds, tagIds, files, statement, step))
            return false;
    }
    return true;
}

bool TagWriter::writeProduct(const QVector<qint64> &fileIds, const QVector<qint64> &tagIds, Files files,
                             Statement statement, const Step &step)
{
    return forEachPart(tagIds, mostTags, [&](const QVector<qint64> &someTags) {
        const int filesAtOnce = qBound(1, mostPairs / someTags.size(), mostFiles);
        return forEachPart(fileIds, filesAtOnce, [&](const QVector<qint64> &someFiles) {
            if ((step && !step(m_pairs)) || !run(statement(someFiles, someTags), files))
                return false;
            m_pairs += qint64(someFiles.size()) * someTags.size();
            return true;
        });
    });
}

bool TagWriter::run(const QString &statement, Files files)
{
    const auto note = [this, files](const TableData &pairs) {
        for (const TableRowData *pair : pairs)
            (changeOf(pair->at(1).toLongLong()).*files).append(pair->at(0).toLongLong());
    };
    return m_provider.runSyncInSlices(statement, rowsAtOnce, note, SliceKey(), m_connectionName);
}

TagChange &TagWriter::changeOf(qint64 tagId)
{
    const auto known = m_places.constFind(tagId);
    if (known != m_places.constEnd())
        return m_done[*known];
    m_places.insert(tagId, m_done.size());
    m_done.append(TagChange{tagId, {}, {}});
    return m_done.last();
}
