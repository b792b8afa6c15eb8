#include "core/providers/groupsprovider.h"

#include "core/providers/chunks.h"
#include "core/providers/singlevalue.h"
#include "db/sql/abstractqueryconstructor.h"
#include "db/sql/transaction.h"

#include <algorithm>

namespace {
const QLatin1String groupsTable("tag_groups");
const QLatin1String linksTable("tag_group_links");
const QLatin1String groupColumn("tag_group_id");
} // namespace

GroupsProvider::GroupsProvider(const AbstractQueryConstructor *constructor, QObject *parent)
    : BaseDBProvider(constructor, parent)
{
}

qint64 GroupsProvider::addGroup(const QString &name)
{
    if (!runEdit(insertText(name) + constructor()->statementEnd()))
        return 0;
    const qint64 id =
        SingleValue::read(*this, constructor()->lastIdQuery(QStringLiteral("group_id"))).toLongLong();
    if (id > 0)
        announce([this, id] { loadGroups({id}); });
    return id;
}

void GroupsProvider::loadAllGroups()
{
    request(selectText() + constructor()->statementEnd(), &GroupsProvider::gotAllGroupsInfo);
}

void GroupsProvider::loadGroups(const QVector<qint64> &ids)
{
    Chunks::forEach(ids, Chunks::idsPerStatement, [this](const QVector<qint64> &part) {
        request(groupsText(part), &GroupsProvider::groupsUpdated);
        return true;
    });
}

void GroupsProvider::expectGroups(const QVector<qint64> &ids)
{
    expect(groupsText(ids));
}

QString GroupsProvider::groupsText(const QVector<qint64> &ids) const
{
    return selectText() +
           constructor()->whereClause(
               constructor()->inClause(QStringLiteral("tag_groups.tag_group_id"), SqlText::idTexts(ids))) +
           constructor()->statementEnd();
}

bool GroupsProvider::readGroups(const QVector<qint64> &ids, TableData &rows)
{
    return Chunks::forEach(ids, Chunks::idsPerStatement, [&](const QVector<qint64> &part) {
        TableData read;
        const bool isRead = runSync(groupsText(part), read);
        rows += read;
        return isRead;
    });
}

bool GroupsProvider::renameGroup(qint64 id, const QString &name)
{
    const QString condition = SqlText::fill(QStringLiteral("tag_group_id=%1"), {QString::number(id)});
    const bool ok = runEdit(constructor()->updateQuery({QStringLiteral("name")}, groupsTable, {name}) +
                            constructor()->whereClause(condition) + constructor()->statementEnd());
    announce([this, ok, id, name] { emit groupsRenamed(ok, id, name); });
    return ok;
}

bool GroupsProvider::removeGroups(const QVector<qint64> &ids)
{
    if (ids.isEmpty())
        return true;
    const bool ok = runRemoval(ids);
    announce([this, ok, ids] { emit groupsRemoved(ok, ids); });
    return ok;
}

bool GroupsProvider::setGroupTags(qint64 groupId, const QVector<qint64> &removedTagIds,
                                  const QVector<qint64> &addedTagIds)
{
    return setGroupTags({{groupId, removedTagIds, addedTagIds}});
}

bool GroupsProvider::setGroupTags(const QVector<GroupTagChange> &changes)
{
    QVector<GroupTagChange> real;
    QVector<qint64> groupIds;
    for (const GroupTagChange &change : changes) {
        if (change.removedTagIds.isEmpty() && change.addedTagIds.isEmpty())
            continue;
        real.append(change);
        groupIds.append(change.groupId);
    }
    if (real.isEmpty())
        return true;
    {
        Transaction transaction(*this);
        const auto run = [this](const GroupTagChange &change) { return runTagChange(change); };
        if (!transaction.isActive() || !std::all_of(real.cbegin(), real.cend(), run) || !transaction.commit())
            return false;
    }
    // Asked for together with the commit on a server, so that the answer is here when it is wanted.
    expectGroups(groupIds);
    announce([this, groupIds] { loadGroups(groupIds); });
    return true;
}

QString GroupsProvider::selectText() const
{
    const QString condition = QStringLiteral("tag_groups.tag_group_id = tag_group_links.tag_group_id");
    return constructor()->selectQuery(
        {QStringLiteral("tag_groups.*"), QStringLiteral("tag_group_links.tag_id")},
        groupsTable + constructor()->joinQuery(LeftJoin, linksTable, condition));
}

QString GroupsProvider::insertText(const QString &name) const
{
    return constructor()->insertQuery({QStringLiteral("name")}, groupsTable, {{name}});
}

bool GroupsProvider::runRemoval(const QVector<qint64> &ids)
{
    Transaction transaction(*this);
    const auto remove = [this](const QVector<qint64> &part) {
        const QString end =
            constructor()->whereClause(constructor()->inClause(groupColumn, SqlText::idTexts(part))) +
            constructor()->statementEnd();
        // Links first, which refer to the group.
        return runSync(constructor()->deleteQuery(linksTable) + end) &&
               runSync(constructor()->deleteQuery(groupsTable) + end);
    };
    return transaction.isActive() && Chunks::forEach(ids, Chunks::idsPerStatement, remove) &&
           transaction.commit();
}

bool GroupsProvider::runTagChange(const GroupTagChange &change)
{
    return removeTagLinks(change.groupId, change.removedTagIds) &&
           addTagLinks(change.groupId, change.addedTagIds);
}

bool GroupsProvider::removeTagLinks(qint64 groupId, const QVector<qint64> &tagIds)
{
    return Chunks::forEach(tagIds, Chunks::idsPerStatement, [this, groupId](const QVector<qint64> &part) {
        const QString condition =
            SqlText::fill(QStringLiteral("tag_group_id='%1'"), {QString::number(groupId)}) +
            constructor()->logicalOperator(AndOperator) +
            constructor()->inClause(QStringLiteral("tag_id"), SqlText::idTexts(part));
        return runSync(constructor()->deleteQuery(linksTable) + constructor()->whereClause(condition) +
                       constructor()->statementEnd());
    });
}

bool GroupsProvider::addTagLinks(qint64 groupId, const QVector<qint64> &tagIds)
{
    QVector<qint64> distinct = tagIds;
    std::sort(distinct.begin(), distinct.end());
    distinct.erase(std::unique(distinct.begin(), distinct.end()), distinct.end());
    return Chunks::forEach(distinct, Chunks::idsPerStatement, [this, groupId](const QVector<qint64> &part) {
        QVector<QStringList> rows;
        rows.reserve(part.size());
        for (const qint64 tagId : part)
            rows.append({QString::number(tagId), QString::number(groupId)});
        // One that is in the group already, by another client, would fail the whole insert.
        return runSync(constructor()->insertQuery({QStringLiteral("tag_id"), groupColumn}, linksTable, rows) +
                       QLatin1String(" ON CONFLICT DO NOTHING") + constructor()->statementEnd());
    });
}
