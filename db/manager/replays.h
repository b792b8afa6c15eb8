#pragma once

#include "db/manager/newsmerger.h"
#include "db/manager/providers.h"
#include "db/undo/changereplay.h"

class AbstractQueryConstructor;
class RecordEditsHost;
class RecordKeeper;

/**
 * Takes steps back and does them again: each is an edit of its own, in one transaction, whose rows are merged
 * by their keys afterwards as those are that others have changed. Owned by the manager, GUI thread.
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

private:
    QHash<qint64, int> filesWithTagsOf(const QVector<ChangeSet> &edits) const;
    void tell(const ForeignChanges &touched, bool areAutoLinksTouched);

    RecordEditsHost &m_host;
    RecordKeeper &m_records;
    NewsMerger m_merger;
    DatabaseProviders m_providers;
    const AbstractQueryConstructor *m_constructor = nullptr;
};
