#include "core/merging/tagmerger.h"

#include "core/merging/mergednodes.h"
#include "core/merging/mergedpaths.h"
#include "db/sql/abstractqueryconstructor.h"
#include "db/sql/sqltext.h"

#include <QMap>

#include <algorithm>
#include <iterator>

namespace {
constexpr int tagsPerStatement = 5000;

const QString tagColumn = QStringLiteral("tag_id");
const QString pathColumn = QStringLiteral("relationship_path");

/** Both ascend. */
QVector<qint64> without(const QVector<qint64> &ids, const QVector<qint64> &others)
{
    QVector<qint64> rest;
    std::set_difference(ids.cbegin(), ids.cend(), others.cbegin(), others.cend(), std::back_inserter(rest));
    return rest;
}
} // namespace

bool TagMerger::read(qint64 target, const QVector<qint64> &others, ChangeSet &set)
{
    m_target = target;
    QVector<qint64> there = others;
    there.removeAll(target);
    if (!readTags(there, set))
        return false;
    if (there.isEmpty())
        return true;
    MergedNodes nodes(*this);
    if (!readGroups(there, set) || !nodes.read(target, there) || !readRelations(there, set) ||
        !readFiles(there, set))
        return false;
    nodes.addTo(set);
    return true;
}

bool TagMerger::readTags(QVector<qint64> &others, ChangeSet &set)
{
    RowImages tags;
    if (!RowReader::read(UndoTable::Tags, tagColumn, SqlText::idTexts(others + QVector<qint64>{m_target}),
                         tags))
        return false;
    const auto rowOf = [&tags](qint64 tagId) { return tags.rows.value(QString::number(tagId)); };
    const RowImage kept = rowOf(m_target);
    const auto isGone = [&](qint64 tagId) { return kept.isEmpty() || rowOf(tagId).isEmpty(); };
    others.erase(std::remove_if(others.begin(), others.end(), isGone), others.end());
    RowImage described = kept;
    const int description = tags.columns.indexOf(QStringLiteral("tag_description"));
    for (const qint64 tagId : qAsConst(others)) {
        const RowImage row = rowOf(tagId);
        // The one that stays keeps its own; the first of the others that has one lends it otherwise.
        if (described.at(description).toString().trimmed().isEmpty())
            described[description] = row.at(description);
        set.rows.append({UndoTable::Tags, tags.columns, row, {}});
    }
    if (described != kept)
        set.rows.append({UndoTable::Tags, tags.columns, kept, described});
    return true;
}

bool TagMerger::readGroups(const QVector<qint64> &others, ChangeSet &set)
{
    RowImages links;
    if (!RowReader::read(UndoTable::GroupLinks, tagColumn,
                         SqlText::idTexts(others + QVector<qint64>{m_target}), links))
        return false;
    const int column = links.columns.indexOf(tagColumn);
    QSet<QString> there(links.rows.keyBegin(), links.rows.keyEnd());
    for (const RowImage &link : qAsConst(links.rows)) {
        if (link.at(column).toLongLong() == m_target)
            continue;
        set.rows.append({UndoTable::GroupLinks, links.columns, link, {}});
        RowImage moved = link;
        moved[column] = m_target;
        const QString key = keyOf(UndoTable::GroupLinks, links.columns, moved);
        // Once in a group, however many of the tags stood there.
        if (!there.contains(key))
            set.rows.append({UndoTable::GroupLinks, links.columns, {}, moved});
        there.insert(key);
    }
    return true;
}

bool TagMerger::readRelations(const QVector<qint64> &others, ChangeSet &set)
{
    QStringList paths;
    const auto collect = [&paths](const TableData &slice) {
        for (const TableRowData *row : slice)
            paths.append(row->at(0).toString());
    };
    if (!readSlices(constructor()->selectQuery({pathColumn}, infoOf(UndoTable::Relations).name) +
                        constructor()->statementEnd(),
                    collect))
        return false;
    // Paths hold ids as text, so that those of a tag are found by looking at all of them.
    const MergedPaths merged(paths, m_target, QSet<qint64>(others.cbegin(), others.cend()));
    for (const QString &path : merged.removed())
        set.rows.append({UndoTable::Relations, {pathColumn}, {path}, {}});
    for (const QString &path : merged.added())
        set.rows.append({UndoTable::Relations, {pathColumn}, {}, {path}});
    return true;
}

// No key of the table begins with the tag, so that all its rows are looked at: once, and comparing with the
// bounds first, which spares most of them the search among many ids.
bool TagMerger::readFiles(const QVector<qint64> &others, ChangeSet &set)
{
    QMap<qint64, QVector<qint64>> files;
    const auto collect = [&files](const TableData &slice) {
        for (const TableRowData *row : slice)
            files[row->at(1).toLongLong()].append(row->at(0).toLongLong());
    };
    const QVector<qint64> wanted = others + QVector<qint64>{m_target};
    for (int from = 0; from < wanted.size(); from += tagsPerStatement) {
        const QVector<qint64> part = wanted.mid(from, tagsPerStatement);
        const auto [lowest, highest] = std::minmax_element(part.cbegin(), part.cend());
        const QString condition = SqlText::fill(QStringLiteral("tag_id BETWEEN %1 AND %2"),
                                                {QString::number(*lowest), QString::number(*highest)}) +
                                  constructor()->logicalOperator(AndOperator) +
                                  constructor()->inClause(tagColumn, SqlText::idTexts(part));
        if (!readSlices(constructor()->selectQuery({QStringLiteral("file_id"), tagColumn},
                                                   QStringLiteral("file_tag")) +
                            constructor()->whereClause(condition) + constructor()->statementEnd(),
                        collect))
            return false;
    }
    // Files that have the target already only lose the others.
    QVector<qint64> linked;
    const QVector<qint64> known = files.take(m_target);
    for (QVector<qint64> &ids : files) {
        std::sort(ids.begin(), ids.end());
        linked += ids;
    }
    std::sort(linked.begin(), linked.end());
    linked.erase(std::unique(linked.begin(), linked.end()), linked.end());
    QVector<qint64> sorted = known;
    std::sort(sorted.begin(), sorted.end());
    linked = without(linked, sorted);
    if (!linked.isEmpty())
        set.links.append({m_target, linked, true});
    for (auto tag = files.cbegin(); tag != files.cend(); ++tag)
        set.links.append({tag.key(), tag.value(), false});
    return true;
}
