#include "db/manager/replays.h"

#include "core/merging/tagmerger.h"
#include "core/providers/browstreeprovider.h"
#include "core/providers/mainviewprovider.h"
#include "core/records/file.h"
#include "db/manager/editnotes.h"
#include "db/manager/pendingreloads.h"
#include "db/manager/recordedits.h"
#include "db/manager/recordkeeper.h"

#include <algorithm>

QVector<ChangeSet> Replays::editsOf(const EditStep &step, bool isUndo)
{
    if (!isUndo)
        return step.edits;
    QVector<ChangeSet> edits;
    std::transform(step.edits.crbegin(), step.edits.crend(), std::back_inserter(edits),
                   [](const ChangeSet &edit) { return edit.inverted(); });
    return edits;
}

EditBase Replays::baseOf(const QVector<ChangeSet> &edits)
{
    EditBase base;
    for (const ChangeSet &edit : edits) {
        for (const TagLinks &links : edit.links) {
            base.files += links.fileIds;
            base.tags.append(links.tagId);
        }
        for (const RowChange &row : edit.rows) {
            const QVariant key = row.value(RowReader::infoOf(row.table).keyColumns.constFirst());
            switch (row.table) {
            case UndoTable::Tags:
                base.tags.append(key.toLongLong());
                break;
            case UndoTable::Groups:
            case UndoTable::GroupLinks:
                base.groups.append(key.toLongLong());
                break;
            case UndoTable::Nodes:
            case UndoTable::NodeLinks:
                base.nodes.append(key.toLongLong());
                break;
            case UndoTable::Relations:
                base.relations.append(key.toString());
                break;
            case UndoTable::Files:
                base.files.append(key.toLongLong());
                break;
            default:
                break;
            }
        }
    }
    return base;
}

void Replays::setProviders(const DatabaseProviders &providers, const AbstractQueryConstructor *constructor)
{
    m_providers = providers;
    m_constructor = constructor;
    m_merger.setProviders(providers);
}

QHash<qint64, int> Replays::filesWithTagsOf(const QVector<ChangeSet> &edits) const
{
    QHash<qint64, int> counts;
    for (const ChangeSet &edit : edits) {
        for (const RowChange &row : edit.rows) {
            if (row.table == UndoTable::Tags && row.after.isEmpty())
                counts.insert(row.id(QStringLiteral("tag_id")), 0);
        }
    }
    if (counts.isEmpty())
        return counts;
    for (const File *file : m_records.files().map()) {
        for (auto count = counts.begin(); count != counts.end(); ++count)
            *count += file->hasTag(count.key()) ? 1 : 0;
    }
    return counts;
}

ChangeReplay::Files Replays::filesOf(QHash<qint64, int> &counts) const
{
    ChangeReplay::Files files;
    files.changeTags = [this, &counts](const TagChanges &changes, QSet<qint64> &lost) {
        for (const TagChange &change : changes) {
            counts[change.tagId] += change.linked.size() - change.unlinked.size();
            for (const qint64 fileId : change.linked + change.unlinked) {
                if (!m_records.files().map().contains(fileId))
                    lost.insert(fileId);
            }
        }
        return m_providers.mainView->changeTags(changes);
    };
    files.readUsed = [&counts](const QVector<qint64> &tagIds, QSet<qint64> &used) {
        for (const qint64 tagId : tagIds) {
            if (counts.value(tagId) > 0)
                used.insert(tagId);
        }
        return true;
    };
    return files;
}

bool Replays::write(const QVector<ChangeSet> &edits, ReplayLosses &losses, EditResult &result)
{
    QHash<qint64, int> counts = filesWithTagsOf(edits);
    ChangeReplay writer(m_constructor, filesOf(counts));
    m_host.include(&writer);
    const bool isDone = std::all_of(edits.cbegin(), edits.cend(),
                                    [&writer](const ChangeSet &edit) { return writer.run(edit); });
    losses = writer.losses();
    result.isDone = isDone;
    result.reloadIds = {0};
    result.tell = [this, touched = writer.touched(), areLinks = writer.areAutoLinksTouched()] {
        tell(touched, areLinks);
    };
    return isDone;
}

bool Replays::run(const EditStep &step, bool isUndo, ReplayLosses &losses)
{
    const QVector<ChangeSet> edits = editsOf(step, isUndo);
    const auto replay = [&] {
        EditResult result;
        write(edits, losses, result);
        return result;
    };
    return m_host.runEdit(PendingReloads::FullReload, baseOf(edits), replay).isDone;
}

bool Replays::mergeTags(qint64 target, const QVector<qint64> &others)
{
    const auto merge = [&] {
        EditResult result;
        TagMerger merger(m_constructor);
        m_host.include(&merger);
        ChangeSet changes;
        ReplayLosses losses;
        if (!merger.read(target, others, changes) || !m_host.mayTouch(baseOf({changes})) ||
            changes.isEmpty() || !write({changes}, losses, result))
            return EditResult();
        m_host.notes().tagsMerged(target, others, changes);
        result.tell = [this, target, others, tellRows = result.tell] {
            m_records.tellMerge(target, others);
            tellRows();
        };
        return result;
    };
    EditBase base;
    base.tags = others + QVector<qint64>{target};
    return m_host.runEdit(PendingReloads::FullReload, base, merge).isDone;
}

void Replays::take(const ReplayOutcome &outcome, const std::function<void(const TagChanges &)> &takeFiles)
{
    m_taking = outcome;
    m_isTaking = true;
    if (outcome.mergeTarget > 0)
        m_records.tellMerge(outcome.mergeTarget, outcome.mergedTags);
    const auto isNew = [this](qint64 tagId) { return !m_records.tags().row(tagId); };
    m_areRowsTold = std::any_of(outcome.touched.tags.cbegin(), outcome.touched.tags.cend(), isNew);
    if (m_areRowsTold)
        tell(outcome.touched, outcome.areAutoLinksTouched);
    takeFiles(outcome.tagged);
}

bool Replays::settle(ReplayOutcome &outcome)
{
    if (!m_isTaking)
        return false;
    m_isTaking = false;
    outcome = m_taking;
    m_taking = {};
    if (!m_areRowsTold)
        tell(outcome.touched, outcome.areAutoLinksTouched);
    return true;
}

void Replays::tell(const ForeignChanges &touched, bool areAutoLinksTouched)
{
    m_merger.add(touched);
    do {
        if (!m_merger.read()) {
            m_merger.clear();
            m_host.reloadLater();
            return;
        }
        m_merger.merge();
    } while (!m_merger.pending().isEmpty());
    if (areAutoLinksTouched)
        m_providers.browsTree->loadAutolinks();
}
