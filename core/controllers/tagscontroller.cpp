#include "core/controllers/tagscontroller.h"

#include "core/controllers/browstreecontroller.h"
#include "core/controllers/favouritetags.h"
#include "core/controllers/mainviewcontroller.h"
#include "core/controllers/narrowing.h"
#include "core/controllers/relationscontroller.h"
#include "core/prompts/userprompts.h"
#include "core/records/tbnode.h"
#include "core/records/trnode.h"
#include "db/manager/databasemanger.h"
#include "models/contents/contentsmodel.h"
#include "models/contents/filefiltermodel.h"
#include "models/counts/tagcounts.h"
#include "models/tags/tagsfilterproxy.h"
#include "models/tags/tagsgroupproxy.h"
#include "models/tags/tagstablemodel.h"

#include <QSet>

#include <algorithm>
#include <iterator>
#include <utility>

TagsController::TagsController(DatabaseManger *manager, const AbstractQueryConstructor *constructor,
                               Collection *collection)
    : AbstractController(manager, constructor, collection),
      m_counts(new TagCounts(this)),
      m_favourites(new FavouriteTags(this)),
      m_groupProxy(new TagsGroupProxy(this)),
      m_filterProxy(new TagsFilterProxy(this))
{
    if (!manager)
        return;
    connect(manager, &DatabaseManger::tagsLoaded, this, &TagsController::loadedDataFromDB);
    connect(manager, &DatabaseManger::tagsLoaded, this, &TagsController::namesChanged);
    connect(manager, &DatabaseManger::tagsAdded, this, &TagsController::namesChanged);
    connect(manager, &DatabaseManger::tagsRenamed, this, &TagsController::namesChanged);
    connect(manager, &DatabaseManger::tagsRemoved, this, &TagsController::namesChanged);
    connect(manager, &DatabaseManger::tagsMerged, m_favourites, &FavouriteTags::merge);
    connect(manager, &DatabaseManger::tagsMerged, this, &TagsController::tagsMerged);
    connect(manager, &DatabaseManger::tagsRemoved, m_favourites, &FavouriteTags::forget);
    connect(manager, &DatabaseManger::tagsRemoved, this, &TagsController::showMerged);
    // The tags below a tag count too, and relationships are the last that a reload brings.
    connect(manager, &DatabaseManger::allDataReloaded, this, &TagsController::showSelectionAgain);
    connect(manager, &DatabaseManger::aboutToReloadAllData, m_counts, [this] { m_counts->setReading(true); });
    connect(manager, &DatabaseManger::allDataReloaded, m_counts, [this] { m_counts->setReading(false); });
    m_tableModel = new TagsTableModel(this, manager, this);
    connect(this, &TagsController::markedTagsChanged, m_tableModel, &TagsTableModel::setMarkedTagIds);
    m_groupProxy->setSourceModel(m_tableModel);
    m_filterProxy->setSourceModel(m_groupProxy);
}

void TagsController::setPeers(BrowsTreeController *browsTree, GroupsController *groups,
                              MainViewController *mainView, RelationsController *relations)
{
    m_browsTree = browsTree;
    m_groups = groups;
    m_mainView = mainView;
    m_relations = relations;
    if (!m_mainView)
        return;
    connect(m_mainView->filterModel(), &FileFilterModel::dTagsChanged, m_groupProxy,
            &TagsGroupProxy::setDTagIds, Qt::UniqueConnection);
    m_counts->setFiles(m_mainView->filterModel());
    // The table of files counts its tags, so it has to know of a change first.
    if (m_tableModel)
        connect(m_mainView->contentsModel(), &ContentsModel::contentsChanged, m_tableModel,
                &TagsTableModel::updateFileCounts, Qt::UniqueConnection);
}

void TagsController::load()
{
    if (manager())
        manager()->loadAllTags();
}

void TagsController::loadedDataFromDB(const TableData &)
{
    QVector<qint64> remaining;
    for (const qint64 tagId : qAsConst(m_markedTagIds)) {
        if (manager()->hasTag(tagId))
            remaining.append(tagId);
    }
    markTags(remaining);
}

void TagsController::showSelectionAgain()
{
    // All of its tags may be excluded ones, which have no mark.
    if (m_shown == Shown::Narrowed && m_mainView)
        m_mainView->narrowing()->askAgain();
    else if (m_shown == Shown::AnyOf && !m_markedTagIds.isEmpty())
        showTagsEitherOr(m_markedTagIds);
    else if (m_shown == Shown::AllOf && !m_markedTagIds.isEmpty())
        showTagsSelected(m_markedTagIds);
}

qint64 TagsController::addTag(const QString &name, const QVector<qint64> &fileIds)
{
    return mayName(name) ? manager()->addTag(name.simplified(), fileIds) : 0;
}

qint64 TagsController::addTagToGroup(const QString &name, qint64 groupId)
{
    return mayName(name) ? manager()->addTagToGroup(name.simplified(), groupId) : 0;
}

bool TagsController::areUsable(const ChosenTags &tags)
{
    if (!manager() || !mayEdit())
        return false;
    // The line with the names may have stood open for long.
    if (knownTags(tags.ids).size() != tags.ids.size())
        return refuse(tr("Tag Missing"), tr("One of the tags has been removed meanwhile."));
    return std::all_of(tags.newNames.cbegin(), tags.newNames.cend(),
                       [this](const QString &name) { return mayName(name); });
}

bool TagsController::tagFiles(const QVector<qint64> &fileIds, const ChosenTags &tags)
{
    if (!m_mainView || !areUsable(tags))
        return false;
    // Of many files the worker takes care, once the tags are there.
    const int tagCount = tags.ids.size() + tags.newNames.size();
    const bool areMany = qint64(fileIds.size()) * tagCount > FileEdits::mostPairsAtOnce();
    bool isDone = tags.newNames.isEmpty() || manager()->tagFiles(areMany ? QVector<qint64>() : fileIds, tags);
    if (isDone && (areMany || tags.newNames.isEmpty()))
        isDone = m_mainView->changeTags(fileIds, tags.ids + idsOf(tags.newNames), {});
    return noteUse(isDone, tags);
}

bool TagsController::addNodesOf(const ChosenTags &tags, qint64 parentId)
{
    if (!areUsable(tags))
        return false;
    if (parentId > 0 && !(m_browsTree && m_browsTree->nodeById(parentId)))
        return refuse(tr("Node Missing"), tr("The node has been removed meanwhile."));
    return noteUse(tags.newNames.isEmpty() ? manager()->addNodesBelow(tags.ids, parentId)
                                           : manager()->addNodesOf(tags, parentId),
                   tags);
}

bool TagsController::addRelationsOf(const ChosenTags &tags, const QString &parentPath)
{
    if (!m_relations || !areUsable(tags))
        return false;
    if (!parentPath.isEmpty() && !manager()->relationNode(parentPath))
        return refuse(tr("Tag Relationship Missing"), tr("The tag relationship has been removed meanwhile."));
    if (!m_relations->isLegal(parentPath, tags.ids))
        return refuse(tr("Error creating tag relationship"), tr("This is an illegal tag relationship."));
    return noteUse(tags.newNames.isEmpty() ? manager()->addRelations(parentPath, tags.ids)
                                           : manager()->addRelationsOf(parentPath, tags),
                   tags);
}

bool TagsController::refuse(const QString &title, const QString &text)
{
    prompts().tell(UserPrompts::Warning, title, text);
    return false;
}

bool TagsController::noteUse(bool isDone, const ChosenTags &tags)
{
    if (isDone)
        m_favourites->noteUsed(tags.ids + idsOf(tags.newNames));
    return isDone;
}

QVector<qint64> TagsController::idsOf(const QStringList &names) const
{
    QVector<qint64> ids;
    if (names.isEmpty())
        return ids;
    for (const TableRowData *row : manager()->tags()) {
        const qint64 tagId = row->value(QStringLiteral("tag_id")).toLongLong();
        // One pass over all tags; new names are few.
        if (names.contains(manager()->tagName(tagId)))
            ids.append(tagId);
    }
    return ids;
}

bool TagsController::mayName(const QString &name)
{
    if (!manager() || !mayEdit() || !manager()->isNameGiven(name))
        return false;
    // Compared as it was typed: a name with a blank more passes, and is then stored without it.
    if (!manager()->hasTagNamed(name))
        return true;
    emit tagDuplicated();
    return false;
}

bool TagsController::renameTag(qint64 tagId, const QString &name)
{
    if (!mayName(name))
        return false;
    const QString stored = name.simplified();
    manager()->renameTag(tagId, stored);
    return manager()->tagName(tagId) == stored;
}

void TagsController::changeDescription(qint64 tagId, const QString &text)
{
    if (manager() && mayEdit())
        manager()->changeTagDescription(tagId, text);
}

void TagsController::removeTags(const QVector<qint64> &tagIds)
{
    if (!manager() || !mayEdit() || !manager()->removeTags(tagIds))
        return;
    QVector<qint64> marked = m_markedTagIds;
    const QSet<qint64> gone(tagIds.cbegin(), tagIds.cend());
    const auto isRemoved = [&gone](qint64 tagId) { return gone.contains(tagId); };
    marked.erase(std::remove_if(marked.begin(), marked.end(), isRemoved), marked.end());
    markTags(marked);
    if (m_mainView)
        m_mainView->forgetTags(tagIds);
}

bool TagsController::mergeTags(qint64 target, const QVector<qint64> &others)
{
    if (!manager() || !mayEdit())
        return false;
    if (knownTags(others + QVector<qint64>{target}).size() != others.size() + 1)
        return refuse(tr("Tag Missing"), tr("One of the tags has been removed meanwhile."));
    return manager()->mergeTags(target, others);
}

void TagsController::tagsMerged(qlonglong target, const QVector<qint64> &others)
{
    m_mergedInto = target;
    m_merged = others;
}

void TagsController::showMerged()
{
    if (m_merged.isEmpty())
        return;
    const QVector<qint64> others = std::exchange(m_merged, {});
    // A node that is shown is followed by its own controller.
    if (m_mainView && !(m_browsTree && m_browsTree->currentTagNodeId() > 0))
        m_mainView->narrowing()->replace(m_mergedInto, others);
}

int TagsController::nodesCount(const QVector<qint64> &tagIds) const
{
    if (!manager())
        return 0;
    const QSet<qint64> wanted(tagIds.cbegin(), tagIds.cend());
    const Map<qint64, TBnode *> &nodes = manager()->nodes();
    return int(std::count_if(nodes.begin(), nodes.end(),
                             [&wanted](const TBnode *node) { return wanted.contains(node->tagId()); }));
}

int TagsController::relationsCount(const QVector<qint64> &tagIds) const
{
    if (!manager())
        return 0;
    const QSet<qint64> wanted(tagIds.cbegin(), tagIds.cend());
    int count = 0;
    for (const auto &place : qAsConst(manager()->relationNodes()))
        count += wanted.contains(place.second->id()) ? 1 : 0;
    return count;
}

void TagsController::setTagFilter(const QString &text)
{
    m_filterProxy->setNameFilter(text);
}

void TagsController::linkFilesToTag(qint64 tagId, const QVector<qint64> &fileIds)
{
    if (m_mainView && mayEdit())
        m_mainView->linkTags(fileIds, {tagId});
}

void TagsController::addFilesToTag(qint64 tagId, const QList<QUrl> &urls)
{
    if (m_mainView && mayEdit())
        m_mainView->addUrls(urls, {tagId});
}

bool TagsController::isTagInUse(const QVector<qint64> &tagIds) const
{
    if (!manager())
        return false;
    if (tagIds.isEmpty())
        return false;
    // The records have the nodes of one tree only.
    if (manager()->areTagsOnNodes(tagIds))
        return true;
    const QSet<qint64> wanted(tagIds.cbegin(), tagIds.cend());
    for (const auto &item : qAsConst(manager()->relationNodes())) {
        if (wanted.contains(item.second->id()))
            return true;
    }
    return std::any_of(tagIds.cbegin(), tagIds.cend(),
                       [this](qint64 tagId) { return filesCount(tagId) > 0; });
}

qint64 TagsController::filesCount(qint64 tagId) const
{
    return m_mainView ? m_mainView->contentsModel()->fileIndex().useCount(tagId) : 0;
}

FileCount TagsController::fileCount(qint64 tagId) const
{
    return m_counts->of(tagId);
}

QHash<qint64, QString> TagsController::allNames() const
{
    QHash<qint64, QString> names;
    if (!manager())
        return names;
    for (const TableRowData *row : manager()->tags()) {
        const qint64 tagId = row->value(QStringLiteral("tag_id")).toLongLong();
        names.insert(tagId, manager()->tagName(tagId));
    }
    return names;
}

QHash<qint64, QString> TagsController::tagsNames(const QVector<qint64> &tagIds) const
{
    QHash<qint64, QString> names;
    for (const qint64 tagId : tagIds) {
        if (manager() && manager()->hasTag(tagId))
            names.insert(tagId, manager()->tagName(tagId));
    }
    return names;
}

QString TagsController::tagName(qint64 tagId) const
{
    return manager() ? manager()->tagName(tagId) : QString();
}

void TagsController::showTagsSelected(const QVector<qint64> &tagIds)
{
    if (m_mainView)
        m_mainView->showTagsSelected(tagIds);
    m_shown = Shown::AllOf;
    markTags(tagIds);
}

void TagsController::showTagsEitherOr(const QVector<qint64> &tagIds)
{
    if (m_mainView)
        m_mainView->showTagsEitherOr(tagIds);
    m_shown = Shown::AnyOf;
    markTags(tagIds);
}

void TagsController::markTags(const QVector<qint64> &tagIds)
{
    if (m_markedTagIds == tagIds)
        return;
    m_markedTagIds = tagIds;
    emit markedTagsChanged(m_markedTagIds);
}

QSortFilterProxyModel *TagsController::filterProxy() const
{
    return m_filterProxy;
}

void TagsController::markNarrowed(const QVector<qint64> &tagIds)
{
    m_shown = Shown::Narrowed;
    markTags(tagIds);
}

void TagsController::clearMark()
{
    m_shown = Shown::Nothing;
    markTags({});
}
