#pragma once

#include "db/manager/newsmerger.h"
#include "db/manager/providers.h"
#include "db/undo/changereplay.h"
#include "fileops/worker/replayoutcome.h"

#include <functional>

class AbstractQueryConstructor;
class RecordEditsHost;
class RecordKeeper;
struct EditResult;

/**
 * Takes steps back and does them again, and merges tags: each is an edit of its own, in one transaction,
 * whose rows are merged by their keys afterwards as those are that others have changed. What the worker has
 * written for them is taken in here, too. Owned by the manager, GUI thread.
 */
class Replays
{
public:
    /** All of them must outlive this, the providers each call. */
    Replays(RecordEditsHost &host, RecordKeeper &records, ThumbnailCache &thumbnails)
        : m_host(host), m_records(records), m_merger(records, thumbnails)
    {
    }
    void setProviders(const DatabaseProviders &providers, const AbstractQueryConstructor *constructor);

    /** False when the edit was refused or failed, of which the user has been told. */
    bool run(const EditStep &step, bool isUndo, ReplayLosses &losses);
    /** Those changes in the order in which they are to be written. */
    static QVector<ChangeSet> editsOf(const EditStep &step, bool isUndo);
    static EditBase baseOf(const QVector<ChangeSet> &edits);
    /** The others go, and all that they have goes to the target. */
    bool mergeTags(qint64 target, const QVector<qint64> &others);

    /**
     * What the worker has stored: its rows at once or, where tags go, behind the files that lose them, which
     * end in isTaken. Files are taken in by takeFiles.
     */
    void take(const ReplayOutcome &outcome, const std::function<void(const TagChanges &)> &takeFiles);
    /** The files are taken in; false when nothing has waited for them. */
    bool settle(ReplayOutcome &outcome);
    bool isTaking() const { return m_isTaking; }
    const ReplayOutcome &taking() const { return m_taking; }
    /** All is read anew. */
    void clear() { m_isTaking = false; }

private:
    QHash<qint64, int> filesWithTagsOf(const QVector<ChangeSet> &edits) const;
    /** Counts the files of tags in the records, and follows what is written. */
    ChangeReplay::Files filesOf(QHash<qint64, int> &counts) const;
    bool write(const QVector<ChangeSet> &edits, ReplayLosses &losses, EditResult &result);
    void tell(const ForeignChanges &touched, bool areAutoLinksTouched);

    RecordEditsHost &m_host;
    RecordKeeper &m_records;
    NewsMerger m_merger;
    DatabaseProviders m_providers;
    const AbstractQueryConstructor *m_constructor = nullptr;
    bool m_isTaking = false;
    bool m_areRowsTold = false;
    ReplayOutcome m_taking;
};
