#include "db/manager/replays.h"

#include "core/providers/browstreeprovider.h"
#include "core/providers/mainviewprovider.h"
#include "core/records/file.h"
#include "db/manager/pendingreloads.h"
#include "db/manager/recordedits.h"
#include "db/manager/recordkeeper.h"

#include <algorithm>

namespace {
/** In the order in which they are to be written. */
QVector<ChangeSet> editsOf(const EditStep &step, bool isUndo)
{
    if (!isUndo)
        return step.edits;
    QVector<ChangeSet> edits;
    std::transform(step.edits.crbegin(), step.edits.crend(), std::back_inserter(edits),
                   [](const ChangeSet &edit) { return edit.inverted(); });
    return edits;
}

EditBase baseOf(const QVector<ChangeSet> &edits)
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
} // namespace

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

bool Replays::run(const EditStep &step, bool isUndo, ReplayLosses &losses)
{
    const QVector<ChangeSet> edits = editsOf(step, isUndo);
    const auto replay = [&]() -> EditResult {
        const QHash<qint64, int> counts = filesWithTagsOf(edits);
        ChangeReplay::Records records;
        records.hasFile = [this](qint64 fileId) { return m_records.files().map().contains(fileId); };
        records.filesWith = [&counts](qint64 tagId) { return counts.value(tagId); };
        ChangeReplay writer(m_constructor, *m_providers.mainView, records);
        m_host.include(&writer);
        const bool isDone = std::all_of(edits.cbegin(), edits.cend(),
                                        [&writer](const ChangeSet &edit) { return writer.run(edit); });
        losses = writer.losses();
        return {isDone, {0}, [this, touched = writer.touched(), areLinks = writer.areAutoLinksTouched()] {
                    tell(touched, areLinks);
                }};
    };
    return m_host.runEdit(PendingReloads::FullReload, baseOf(edits), replay).isDone;
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
