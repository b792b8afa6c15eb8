#include "db/undo/changereplay.h"

#include "core/providers/chunks.h"
#include "db/sql/abstractqueryconstructor.h"

#include <algorithm>

namespace {
const QString tagId = QStringLiteral("tag_id");
const QString groupId = QStringLiteral("tag_group_id");
const QString nodeId = QStringLiteral("node_id");
const QString childId = QStringLiteral("child_id");
const QString parentId = QStringLiteral("parent_id");
const QString pathColumn = QStringLiteral("relationship_path");

// Rows of one INSERT, which has all their values.
constexpr int rowsPerInsert = 1000;
// Each of its terms is tried on each path.
constexpr int tagsPerCondition = 20;

const QVector<UndoTable> allTables{UndoTable::Tags,      UndoTable::Groups,        UndoTable::GroupLinks,
                                   UndoTable::Nodes,     UndoTable::NodeLinks,     UndoTable::AutoLinks,
                                   UndoTable::Relations, UndoTable::NodeAutoLinks, UndoTable::Files,
                                   UndoTable::Paths};

bool isInsertion(const RowChange &change)
{
    return change.before.isEmpty();
}

bool isRemoval(const RowChange &change)
{
    return change.after.isEmpty();
}

bool isUpdate(const RowChange &change)
{
    return !isInsertion(change) && !isRemoval(change);
}

/** Whether the columns that the change is about have the values of one of its images. */
bool agrees(const RowChange &change, const RowImage &row, const RowImage &image)
{
    if (!isUpdate(change))
        return row == image;
    for (int i = 0; i < change.columns.size(); ++i) {
        if (change.before.at(i) != change.after.at(i) && row.value(i) != image.at(i))
            return false;
    }
    return !row.isEmpty();
}

QString literal(const QVariant &value)
{
    if (!value.isValid())
        return QStringLiteral("NULL");
    return value.type() == QVariant::LongLong ? value.toString() : SqlText::quoted(value.toString());
}

QVector<qint64> tagsOfPath(const QString &path)
{
    QVector<qint64> tags;
    const QVector<QStringRef> pieces = path.splitRef(QLatin1Char('.'));
    for (const QStringRef &piece : pieces)
        tags.append(piece.toLongLong());
    return tags;
}

QString parentPath(const QString &path)
{
    return path.left(qMax(0, path.lastIndexOf(QLatin1Char('.'))));
}
} // namespace

ChangeReplay::ChangeReplay(const AbstractQueryConstructor *constructor, const Files &files, QObject *parent)
    : RowReader(constructor, parent), m_files(files)
{
}

ChangeReplay::ChangeReplay(const AbstractQueryConstructor *constructor, const Files &files,
                           BaseDBProvider &runner, const QString &connectionName)
    : RowReader(constructor, runner, connectionName), m_files(files)
{
}

bool ChangeReplay::run(const ChangeSet &changes)
{
    m_current.clear();
    m_rows.clear();
    m_there.clear();
    m_taken.clear();
    m_pathsThere.clear();
    if (!readCurrent(changes))
        return false;
    for (const RowChange &change : changes.rows)
        judge(change);
    // Files lose their tags before a tag is asked who has it.
    return dropUnfounded() && writeLinks(changes.links, false) && keepUsed() && write() &&
           writeLinks(changes.links, true);
}

bool ChangeReplay::readCurrent(const ChangeSet &changes)
{
    QMap<UndoTable, QStringList> keys;
    for (const RowChange &change : changes.rows)
        keys[change.table].append(change.value(infoOf(change.table).keyColumns.constFirst()).toString());
    for (auto table = keys.begin(); table != keys.end(); ++table) {
        table->removeDuplicates();
        if (!read(table.key(), infoOf(table.key()).keyColumns.constFirst(), *table, m_current[table.key()]))
            return false;
    }
    return true;
}

void ChangeReplay::judge(const RowChange &change)
{
    const RowImage &named = isInsertion(change) ? change.after : change.before;
    const RowImage row = m_current[change.table].rows.value(keyOf(change.table, change.columns, named));
    // What stands as the change would leave it is done already, and is no loss.
    if (agrees(change, row, change.before)) {
        m_rows.append(&change);
    } else if (!agrees(change, row, change.after)) {
        lose(change);
        if (isInsertion(change))
            m_taken[change.table].insert(change.id(infoOf(change.table).keyColumns.constFirst()));
    }
}

void ChangeReplay::lose(const RowChange &change)
{
    switch (change.table) {
    case UndoTable::Files:
    case UndoTable::Paths:
        ++m_losses.files;
        break;
    case UndoTable::Tags:
        ++m_losses.tags;
        break;
    case UndoTable::Nodes:
        ++m_losses.nodes;
        break;
    case UndoTable::NodeLinks:
        // With its node, unless that is there and only moves.
        m_losses.nodes += isUpdate(change) ? 1 : 0;
        break;
    default:
        ++m_losses.others;
    }
}

bool ChangeReplay::readNamed()
{
    QSet<qint64> tags;
    QSet<qint64> groups;
    QSet<qint64> nodes;
    QSet<QString> paths;
    for (const RowChange *change : qAsConst(m_rows)) {
        if (isRemoval(*change))
            continue;
        const auto id = [change](const QString &column) {
            return change->after.value(change->columns.indexOf(column)).toLongLong();
        };
        if (change->table == UndoTable::GroupLinks)
            groups.insert(id(groupId));
        if (change->table == UndoTable::GroupLinks || change->table == UndoTable::Nodes)
            tags.insert(id(tagId));
        if (change->table == UndoTable::NodeAutoLinks)
            nodes.insert(id(nodeId));
        if (change->table == UndoTable::NodeLinks)
            nodes += {id(parentId), id(childId)};
        if (change->table == UndoTable::Relations) {
            const QString path = change->value(pathColumn).toString();
            for (const qint64 tag : tagsOfPath(path))
                tags.insert(tag);
            paths.insert(parentPath(path));
        }
    }
    RowImages found;
    const auto ids = [this](UndoTable table, const QString &column, const QSet<qint64> &wanted) {
        return readIds(infoOf(table).name, column, wanted.values().toVector(), m_there[table]);
    };
    if (!ids(UndoTable::Tags, tagId, tags) || !ids(UndoTable::Groups, groupId, groups) ||
        !ids(UndoTable::Nodes, nodeId, nodes) ||
        !read(UndoTable::Relations, pathColumn, QStringList(paths.values()), found))
        return false;
    for (auto row = found.rows.cbegin(); row != found.rows.cend(); ++row)
        m_pathsThere.insert(row.key());
    return true;
}

bool ChangeReplay::isFounded(const RowChange &change) const
{
    if (isRemoval(change))
        return true;
    const auto isThere = [&](UndoTable table, const QString &column) {
        const qint64 id = change.after.value(change.columns.indexOf(column)).toLongLong();
        return m_there.value(table).contains(id) || (column == parentId && id == 0);
    };
    switch (change.table) {
    case UndoTable::GroupLinks:
        return isThere(UndoTable::Tags, tagId) && isThere(UndoTable::Groups, groupId);
    case UndoTable::Nodes:
        return isThere(UndoTable::Tags, tagId);
    case UndoTable::NodeLinks:
        return isThere(UndoTable::Nodes, childId) && isThere(UndoTable::Nodes, parentId);
    case UndoTable::NodeAutoLinks:
        return isThere(UndoTable::Nodes, nodeId);
    case UndoTable::Relations: {
        const QString path = change.value(pathColumn).toString();
        const QVector<qint64> tags = tagsOfPath(path);
        const QSet<qint64> there = m_there.value(UndoTable::Tags);
        return (parentPath(path).isEmpty() || m_pathsThere.contains(parentPath(path))) &&
               std::all_of(tags.cbegin(), tags.cend(), [&](qint64 tag) { return there.contains(tag); });
    }
    default:
        return true;
    }
}

bool ChangeReplay::dropUnfounded()
{
    if (!readNamed())
        return false;
    for (auto taken = m_taken.cbegin(); taken != m_taken.cend(); ++taken)
        m_there[taken.key()] -= taken.value();
    for (const RowChange *change : qAsConst(m_rows)) {
        const qint64 id = change->id(infoOf(change->table).keyColumns.constFirst());
        if (change->table == UndoTable::Relations && isInsertion(*change))
            m_pathsThere.insert(change->value(pathColumn).toString());
        else if (isInsertion(*change))
            m_there[change->table].insert(id);
    }
    // What is dropped takes the foundation of others away.
    for (bool isDropped = true; isDropped;) {
        isDropped = false;
        QSet<qint64> lostNodes;
        const auto drop = [&](const RowChange *change) {
            if (isFounded(*change))
                return false;
            lose(*change);
            isDropped = true;
            if (change->table == UndoTable::Relations)
                m_pathsThere.remove(change->value(pathColumn).toString());
            if (change->table == UndoTable::Nodes)
                m_there[UndoTable::Nodes].remove(change->id(nodeId));
            if (change->table == UndoTable::NodeLinks && isInsertion(*change))
                lostNodes.insert(change->id(childId));
            return true;
        };
        m_rows.erase(std::remove_if(m_rows.begin(), m_rows.end(), drop), m_rows.end());
        dropRows(lostNodes, UndoTable::Nodes);
    }
    return true;
}

void ChangeReplay::dropRows(const QSet<qint64> &ids, UndoTable table)
{
    const QString column = infoOf(table).keyColumns.constFirst();
    const auto drop = [&](const RowChange *change) {
        if (change->table != table || !ids.contains(change->id(column)))
            return false;
        lose(*change);
        m_there[table].remove(change->id(column));
        return true;
    };
    if (!ids.isEmpty())
        m_rows.erase(std::remove_if(m_rows.begin(), m_rows.end(), drop), m_rows.end());
}

ChangeReplay::Rows ChangeReplay::rowsOf(UndoTable table, bool (*isWanted)(const RowChange &)) const
{
    Rows rows;
    std::copy_if(m_rows.cbegin(), m_rows.cend(), std::back_inserter(rows),
                 [&](const RowChange *change) { return change->table == table && isWanted(*change); });
    return rows;
}

bool ChangeReplay::keepUsed()
{
    // A node that is kept keeps the one above it, and all of them their tags.
    for (int before = -1; before != m_rows.size();) {
        before = m_rows.size();
        if (!keepUsed(UndoTable::Nodes, UndoTable::NodeLinks, parentId))
            return false;
        QSet<qint64> removed;
        for (const RowChange *change : rowsOf(UndoTable::Nodes, isRemoval))
            removed.insert(change->id(nodeId));
        const auto isOfKept = [&](const RowChange *change) {
            return change->table == UndoTable::NodeLinks && isRemoval(*change) &&
                   !removed.contains(change->id(childId));
        };
        m_rows.erase(std::remove_if(m_rows.begin(), m_rows.end(), isOfKept), m_rows.end());
    }
    return keepUsed(UndoTable::Groups, UndoTable::GroupLinks, groupId) &&
           keepUsed(UndoTable::Tags, UndoTable::GroupLinks, tagId) &&
           keepUsed(UndoTable::Tags, UndoTable::Nodes, tagId) && keepUsedTags();
}

bool ChangeReplay::keepUsed(UndoTable what, UndoTable user, const QString &column)
{
    QVector<qint64> ids;
    for (const RowChange *change : rowsOf(what, isRemoval))
        ids.append(change->id(infoOf(what).keyColumns.constFirst()));
    RowImages users;
    if (!read(user, column, SqlText::idTexts(ids), users))
        return false;
    // Users that go with the same step, or change their mind in it, hold nothing back.
    for (const RowChange *change : qAsConst(m_rows)) {
        if (change->table == user && !isInsertion(*change))
            users.rows.remove(keyOf(user, change->columns, change->before));
    }
    QSet<qint64> used;
    for (const RowImage &row : qAsConst(users.rows))
        used.insert(row.value(users.columns.indexOf(column)).toLongLong());
    dropRows(used, what);
    return true;
}

bool ChangeReplay::keepUsedTags()
{
    QVector<qint64> ids;
    for (const RowChange *change : rowsOf(UndoTable::Tags, isRemoval))
        ids.append(change->id(tagId));
    QSet<qint64> used;
    if (!ids.isEmpty() && (!readTagsOnPaths(ids, used) || !m_files.readUsed(ids, used)))
        return false;
    dropRows(used, UndoTable::Tags);
    return true;
}

bool ChangeReplay::readTagsOnPaths(const QVector<qint64> &tagIds, QSet<qint64> &used)
{
    QSet<QString> leaving;
    for (const RowChange *change : rowsOf(UndoTable::Relations, isRemoval))
        leaving.insert(change->value(pathColumn).toString());
    // Each tag of a path is the last one of a path, too.
    QStringList conditions;
    for (const qint64 id : tagIds.size() > tagsPerCondition ? QVector<qint64>() : tagIds)
        conditions.append(
            SqlText::fill(QStringLiteral("relationship_path='%1' OR relationship_path LIKE '%.%1'"),
                          {QString::number(id)}));
    const QSet<qint64> wanted(tagIds.cbegin(), tagIds.cend());
    const auto look = [&](const TableData &paths) {
        for (const TableRowData *row : paths) {
            const QString path = row->at(0).toString();
            const qint64 last = tagsOfPath(path).constLast();
            if (wanted.contains(last) && !leaving.contains(path))
                used.insert(last);
        }
    };
    return readSlices(constructor()->selectQuery({pathColumn}, infoOf(UndoTable::Relations).name) +
                          (conditions.isEmpty()
                               ? QString()
                               : constructor()->whereClause(conditions.join(QLatin1String(" OR ")))) +
                          constructor()->statementEnd(),
                      look);
}

bool ChangeReplay::write()
{
    const auto each = [this](bool (ChangeReplay::*step)(UndoTable)) {
        return std::all_of(allTables.cbegin(), allTables.cend(),
                           [this, step](UndoTable table) { return (this->*step)(table); });
    };
    if (!each(&ChangeReplay::removeRows) || !each(&ChangeReplay::insertRows) ||
        !each(&ChangeReplay::updateRows))
        return false;
    for (const RowChange *change : qAsConst(m_rows))
        note(*change);
    return true;
}

bool ChangeReplay::removeRows(UndoTable table)
{
    const UndoTableInfo &info = infoOf(table);
    // The rows of a table with two keys by the first one, which has few of them.
    QMap<QString, QStringList> keys;
    for (const RowChange *change : rowsOf(table, isRemoval)) {
        const bool isPair = info.keyColumns.size() > 1;
        keys[isPair ? change->value(info.keyColumns.first()).toString() : QString()].append(
            change->value(info.keyColumns.last()).toString());
    }
    for (auto group = keys.cbegin(); group != keys.cend(); ++group) {
        const QString first = group.key().isNull()
                                  ? QString()
                                  : constructor()->inClause(info.keyColumns.first(), {group.key()}) +
                                        constructor()->logicalOperator(AndOperator);
        const bool isDone = Chunks::forEach(*group, Chunks::idsPerStatement, [&](const QStringList &part) {
            return execute(
                constructor()->deleteQuery(info.name) +
                constructor()->whereClause(first + constructor()->inClause(info.keyColumns.last(), part)) +
                constructor()->statementEnd());
        });
        if (!isDone)
            return false;
    }
    return true;
}

bool ChangeReplay::insertRows(UndoTable table)
{
    return Chunks::forEach(rowsOf(table, isInsertion), rowsPerInsert, [&](const Rows &part) {
        QStringList rows;
        for (const RowChange *change : part) {
            QStringList values;
            std::transform(change->after.cbegin(), change->after.cend(), std::back_inserter(values), literal);
            rows.append(QLatin1Char('(') + values.join(QLatin1Char(',')) + QLatin1Char(')'));
        }
        return execute(QLatin1String("INSERT INTO ") + infoOf(table).name + QLatin1String(" (") +
                       part.constFirst()->columns.join(QLatin1Char(',')) + QLatin1String(") VALUES ") +
                       rows.join(QLatin1Char(',')) + constructor()->statementEnd());
    });
}

bool ChangeReplay::updateRows(UndoTable table)
{
    // Rows that get the same values in one statement: many nodes below one parent.
    QMap<QString, QStringList> keys;
    const QString key = infoOf(table).keyColumns.constFirst();
    for (const RowChange *change : rowsOf(table, isUpdate)) {
        QStringList values;
        for (int i = 0; i < change->columns.size(); ++i) {
            if (change->before.at(i) != change->after.at(i))
                values.append(change->columns.at(i) + QLatin1Char('=') + literal(change->after.at(i)));
        }
        keys[values.join(QLatin1Char(','))].append(change->value(key).toString());
    }
    for (auto group = keys.cbegin(); group != keys.cend(); ++group) {
        const bool isDone = Chunks::forEach(*group, Chunks::idsPerStatement, [&](const QStringList &part) {
            return execute(QLatin1String("UPDATE ") + infoOf(table).name + QLatin1String(" SET ") +
                           group.key() + constructor()->whereClause(constructor()->inClause(key, part)) +
                           constructor()->statementEnd());
        });
        if (!isDone)
            return false;
    }
    return true;
}

bool ChangeReplay::writeLinks(const QVector<TagLinks> &links, bool areAdded)
{
    TagChanges changes;
    for (const TagLinks &link : links) {
        if (link.areAdded != areAdded)
            continue;
        const QVector<qint64> none;
        changes.append({link.tagId, areAdded ? link.fileIds : none, areAdded ? none : link.fileIds});
    }
    QSet<qint64> lost;
    const bool isDone = changes.isEmpty() || m_files.changeTags(changes, lost);
    m_losses.files += lost.size();
    return isDone;
}

void ChangeReplay::note(const RowChange &change)
{
    switch (change.table) {
    case UndoTable::Tags:
        m_touched.tags.insert(change.id(tagId));
        break;
    case UndoTable::Groups:
    case UndoTable::GroupLinks:
        m_touched.groups.insert(change.id(groupId));
        break;
    case UndoTable::Nodes:
        m_touched.nodes.insert(change.id(nodeId));
        break;
    case UndoTable::NodeLinks:
        m_touched.nodes.insert(change.id(childId));
        break;
    case UndoTable::AutoLinks:
    case UndoTable::NodeAutoLinks:
        m_areAutoLinksTouched = true;
        break;
    case UndoTable::Relations:
        m_touched.relations.insert(change.value(pathColumn).toString());
        break;
    case UndoTable::Files:
        m_touched.files.insert(change.id(QStringLiteral("file_id")));
        break;
    case UndoTable::Paths:
        m_touched.paths.insert(change.id(QStringLiteral("path_id")));
        break;
    }
}
