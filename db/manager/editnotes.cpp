#include "db/manager/editnotes.h"

#include "app/settings/showntext.h"
#include "core/providers/noderemover.h"
#include "core/records/file.h"
#include "core/records/filekind.h"
#include "core/records/groupitem.h"
#include "core/records/tbnode.h"
#include "db/manager/recordkeeper.h"
#include "fileops/worker/additionoutcome.h"

#include <QLocale>
#include <QSet>

#include <algorithm>
#include <iterator>

namespace {
constexpr int longestName = 60; // signs; what is told stands in one line

const QString tagColumn = QStringLiteral("tag_id");
const QString groupColumn = QStringLiteral("tag_group_id");
const QString nodeColumn = QStringLiteral("node_id");
const QString childColumn = QStringLiteral("child_id");
const QString pathColumn = QStringLiteral("relationship_path");

/** Both ascend. */
QVector<qint64> without(const QVector<qint64> &ids, const QVector<qint64> &others)
{
    if (others.isEmpty())
        return ids;
    QVector<qint64> rest;
    // Linear; by look-ups in the list a million files would take hours.
    std::set_difference(ids.cbegin(), ids.cend(), others.cbegin(), others.cend(), std::back_inserter(rest));
    return rest;
}

QString shown(const QString &name)
{
    return ShownText::cut(name, longestName);
}
} // namespace

QString EditNotes::tag(qint64 tagId) const
{
    return shown(m_records.tags().name(tagId));
}

QString EditNotes::group(qint64 groupId) const
{
    const GroupItem *group = m_records.groups().map().value(groupId);
    return group ? shown(group->name()) : QString();
}

QString EditNotes::nameOf(qint64 fileId) const
{
    const File *file = m_records.files().map().value(fileId);
    return file ? shown(file->name()) : QString();
}

QVector<qint64> EditNotes::filesWith(const QVector<qint64> &fileIds, qint64 tagId, bool isThere) const
{
    QVector<qint64> found;
    const Map<qint64, File *> &files = m_records.files().map();
    for (const qint64 fileId : fileIds) {
        const File *file = files.value(fileId);
        // What was so already is no part of the step: taking it back must not take that along.
        if (file && file->hasTag(tagId) == isThere)
            found.append(fileId);
    }
    return found;
}

int EditNotes::links(const TagChanges &changes)
{
    TagChanges done;
    for (const TagChange &change : changes)
        done.append({change.tagId, filesWith(without(change.linked, change.unlinked), change.tagId, false),
                     filesWith(change.unlinked, change.tagId, true)});
    return linksDone(done);
}

int EditNotes::linksDone(const TagChanges &changes)
{
    QVector<qint64> linked;
    QVector<qint64> unlinked;
    for (const TagChange &change : changes) {
        // What was linked and unlinked again is as it was.
        const TagLinks added{change.tagId, without(change.linked, change.unlinked), true};
        const TagLinks removed{change.tagId, without(change.unlinked, change.linked), false};
        m_record.addLinks(added);
        m_record.addLinks(removed);
        if (!added.fileIds.isEmpty())
            linked.append(change.tagId);
        if (!removed.fileIds.isEmpty())
            unlinked.append(change.tagId);
    }
    const int files = Tagging::files(changes).size();
    if (files > 0)
        tellLinks(linked, unlinked, files);
    return files;
}

void EditNotes::tellLinks(const QVector<qint64> &linked, const QVector<qint64> &unlinked, int files)
{
    const QVector<qint64> &tags = unlinked.isEmpty() ? linked : unlinked;
    const bool isOne = tags.size() == 1;
    const QString name = isOne ? tag(tags.first()) : QString();
    const QString count = QLocale().toString(tags.size());
    if (!linked.isEmpty() && !unlinked.isEmpty())
        m_record.setWords(
            files == 1 ? tr("Change tags of 1 file") : tr("Change tags of %Ln files", nullptr, files),
            files == 1 ? tr("Tags of 1 file changed") : tr("Tags of %Ln files changed", nullptr, files));
    else if (unlinked.isEmpty())
        m_record.setWords(
            files == 1 ? tr("Add tags to 1 file") : tr("Add tags to %Ln files", nullptr, files),
            isOne ? (files == 1 ? tr("%1 added to 1 file") : tr("%1 added to %Ln files", nullptr, files))
                        .arg(name)
                  : (files == 1 ? tr("%1 tags added to 1 file")
                                : tr("%1 tags added to %Ln files", nullptr, files))
                        .arg(count));
    else
        m_record.setWords(files == 1 ? tr("Remove tags from 1 file")
                                     : tr("Remove tags from %Ln files", nullptr, files),
                          isOne ? (files == 1 ? tr("%1 removed from 1 file")
                                              : tr("%1 removed from %Ln files", nullptr, files))
                                      .arg(name)
                                : (files == 1 ? tr("%1 tags removed from 1 file")
                                              : tr("%1 tags removed from %Ln files", nullptr, files))
                                      .arg(count));
}

void EditNotes::filesAdded(const AdditionOutcome &outcome)
{
    linksDone(outcome.matchedTags);
    const int files = outcome.added;
    const int known = outcome.alreadyThere;
    const QString added = files == 1 ? tr("1 file added") : tr("%Ln files added", nullptr, files);
    const QString there =
        known == 1 ? tr("1 was there already") : tr("%Ln were there already", nullptr, known);
    m_record.setOutcome(known == 0 ? added
                                   : tr("%1, %2", "1 file added, 2 were there already").arg(added, there));
}

void EditNotes::tagsMade(const QVector<qint64> &tagIds)
{
    m_record.added(UndoTable::Tags, tagColumn, tagIds);
}

void EditNotes::tagAdded(const QString &name, int files)
{
    m_record.setWords(tr("Add the tag %1").arg(shown(name)),
                      files == 0   ? tr("The tag %1 added").arg(shown(name))
                      : files == 1 ? tr("%1 added to 1 file").arg(shown(name))
                                   : tr("%1 added to %Ln files", nullptr, files).arg(shown(name)));
}

bool EditNotes::tagRenamed(qint64 tagId, const QString &name)
{
    m_record.setWords(tr("Rename the tag %1").arg(tag(tagId)),
                      tr("%1 renamed to %2").arg(tag(tagId), shown(name)));
    return m_record.watch(UndoTable::Tags, tagColumn, QVector<qint64>{tagId});
}

bool EditNotes::tagDescribed(qint64 tagId)
{
    m_record.setWords(tr("Describe the tag %1").arg(tag(tagId)),
                      tr("Description of %1 changed").arg(tag(tagId)));
    return m_record.watch(UndoTable::Tags, tagColumn, QVector<qint64>{tagId});
}

void EditNotes::tagsMerged(qint64 target, const QVector<qint64> &others, const ChangeSet &changes)
{
    const int tags = others.size();
    QSet<qint64> files;
    for (const TagLinks &links : changes.links) {
        if (!links.areAdded)
            files += QSet<qint64>(links.fileIds.cbegin(), links.fileIds.cend());
    }
    const QString name = tag(target);
    const QString done = tags == 1 ? tr("%1 merged into %2").arg(tag(others.first()), name)
                                   : tr("%Ln tags merged into %1", nullptr, tags).arg(name);
    const int count = files.size();
    const QString changed = count == 1 ? tr("1 file changed") : tr("%Ln files changed", nullptr, count);
    m_record.keep(changes);
    m_record.setWords(tags == 1 ? tr("Merge %1 into %2").arg(tag(others.first()), name)
                                : tr("Merge %Ln tags into %1", nullptr, tags).arg(name),
                      tr("%1, %2", "Letters merged into Mail, 3 files changed").arg(done, changed));
}

bool EditNotes::tagsRemoved(const QVector<qint64> &tagIds)
{
    const int tags = tagIds.size();
    m_record.setWords(tags == 1 ? tr("Remove the tag %1").arg(tag(tagIds.first()))
                                : tr("Remove %Ln tags", nullptr, tags),
                      tags == 1 ? tr("The tag %1 removed").arg(tag(tagIds.first()))
                                : tr("%Ln tags removed", nullptr, tags));
    return m_record.watch(UndoTable::Tags, tagColumn, tagIds) &&
           m_record.watch(UndoTable::GroupLinks, tagColumn, tagIds);
}

void EditNotes::groupAdded(qint64 groupId, const QString &name)
{
    m_record.added(UndoTable::Groups, groupColumn, {groupId});
    m_record.setWords(tr("Add the group %1").arg(shown(name)), tr("The group %1 added").arg(shown(name)));
}

void EditNotes::groupJoined(const QVector<qint64> &tagIds)
{
    m_record.added(UndoTable::GroupLinks, tagColumn, tagIds);
}

bool EditNotes::groupRenamed(qint64 groupId, const QString &name)
{
    m_record.setWords(tr("Rename the group %1").arg(group(groupId)),
                      tr("%1 renamed to %2").arg(group(groupId), shown(name)));
    return m_record.watch(UndoTable::Groups, groupColumn, QVector<qint64>{groupId});
}

bool EditNotes::groupsRemoved(const QVector<qint64> &groupIds)
{
    const int groups = groupIds.size();
    m_record.setWords(groups == 1 ? tr("Remove the group %1").arg(group(groupIds.first()))
                                  : tr("Remove %Ln groups", nullptr, groups),
                      groups == 1 ? tr("The group %1 removed").arg(group(groupIds.first()))
                                  : tr("%Ln groups removed", nullptr, groups));
    return m_record.watch(UndoTable::Groups, groupColumn, groupIds) &&
           m_record.watch(UndoTable::GroupLinks, groupColumn, groupIds);
}

bool EditNotes::groupsChanged(const QVector<qint64> &groupIds)
{
    const int groups = groupIds.size();
    m_record.setWords(groups == 1 ? tr("Change the tags of the group %1").arg(group(groupIds.first()))
                                  : tr("Change the tags of %Ln groups", nullptr, groups),
                      groups == 1 ? tr("Tags of the group %1 changed").arg(group(groupIds.first()))
                                  : tr("Tags of %Ln groups changed", nullptr, groups));
    return m_record.watch(UndoTable::GroupLinks, groupColumn, groupIds);
}

bool EditNotes::nodesMove(const QVector<qint64> &nodeIds)
{
    return m_record.watch(UndoTable::NodeLinks, childColumn, nodeIds);
}

void EditNotes::nodesAdded(const QVector<qint64> &nodeIds, const QVector<qint64> &tagIds,
                           const QString &newName)
{
    m_record.added(UndoTable::Nodes, nodeColumn, nodeIds);
    m_record.added(UndoTable::NodeLinks, childColumn, nodeIds);
    const QString name = newName.isEmpty() ? tag(tagIds.value(0)) : shown(newName);
    const int nodes = tagIds.size();
    m_record.setWords(nodes == 1 ? tr("Add the node %1").arg(name) : tr("Add %Ln nodes", nullptr, nodes),
                      nodes == 1 ? tr("The node %1 added").arg(name) : tr("%Ln nodes added", nullptr, nodes));
}

bool EditNotes::nodesRemoved(const NodeRemovalPlan &plan)
{
    const int nodes = plan.removedNodeIds.size();
    m_record.setWords(nodes == 1 ? tr("Remove 1 node") : tr("Remove %Ln nodes", nullptr, nodes),
                      nodes == 1 ? tr("1 node removed") : tr("%Ln nodes removed", nullptr, nodes));
    QVector<qint64> linked = plan.removedNodeIds;
    for (const auto &move : plan.newParents)
        linked += move.second;
    return m_record.watch(UndoTable::Nodes, nodeColumn, plan.removedNodeIds) && nodesMove(linked) &&
           m_record.watch(UndoTable::NodeAutoLinks, nodeColumn, plan.removedNodeIds) &&
           m_record.watch(UndoTable::AutoLinks, QStringLiteral("link_id"), plan.removedAutolinks);
}

bool EditNotes::nodeChanged(qint64 nodeId, const QString &column, bool isOn)
{
    const TBnode *node = m_records.nodes().map().value(nodeId);
    const QString name = node ? tag(node->tagId()) : QString();
    if (column == QLatin1String("inverted"))
        m_record.setWords(tr("Invert the node %1").arg(name),
                          isOn ? tr("%1 inverted").arg(name) : tr("%1 no longer inverted").arg(name));
    else
        m_record.setWords(tr("Change the node %1").arg(name),
                          isOn ? tr("Tag relationships of %1 switched on").arg(name)
                               : tr("Tag relationships of %1 switched off").arg(name));
    return m_record.watch(UndoTable::Nodes, nodeColumn, QVector<qint64>{nodeId});
}

bool EditNotes::relationsAdded(const QStringList &paths, const QVector<qint64> &tagIds,
                               const QString &newName)
{
    const QString name = newName.isEmpty() ? tag(tagIds.value(0)) : shown(newName);
    const int tags = tagIds.size();
    m_record.setWords(tags == 1 ? tr("Add %1 to the tag relationships").arg(name)
                                : tr("Add %Ln tag relationships", nullptr, tags),
                      tags == 1 ? tr("%1 added to the tag relationships").arg(name)
                                : tr("%Ln tag relationships added", nullptr, tags));
    return m_record.watch(UndoTable::Relations, pathColumn, paths);
}

bool EditNotes::relationsRemoved(const QStringList &removed)
{
    const int paths = removed.size();
    m_record.setWords(
        paths == 1 ? tr("Remove 1 tag relationship") : tr("Remove %Ln tag relationships", nullptr, paths),
        paths == 1 ? tr("1 tag relationship removed") : tr("%Ln tag relationships removed", nullptr, paths));
    return m_record.watch(UndoTable::Relations, pathColumn, removed);
}

bool EditNotes::fileRenamed(qint64 fileId, const QString &name)
{
    m_record.setWords(tr("Rename the file %1").arg(nameOf(fileId)),
                      tr("%1 renamed to %2").arg(nameOf(fileId), shown(name)));
    const File *file = m_records.files().map().value(fileId);
    QVector<qint64> paths;
    if (file && file->internal() == FileKind::external)
        paths.append(file->storageId());
    return m_record.watch(UndoTable::Files, QStringLiteral("file_id"), QVector<qint64>{fileId}) &&
           m_record.watch(UndoTable::Paths, QStringLiteral("path_id"), paths);
}

bool EditNotes::fileDescribed(qint64 fileId)
{
    m_record.setWords(tr("Describe the file %1").arg(nameOf(fileId)),
                      tr("Description of %1 changed").arg(nameOf(fileId)));
    return m_record.watch(UndoTable::Files, QStringLiteral("file_id"), QVector<qint64>{fileId});
}
