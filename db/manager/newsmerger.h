#pragma once

#include "core/providers/foreignchanges.h"
#include "db/manager/newscount.h"
#include "db/manager/providers.h"
#include "db/sql/tabledata.h"

class RecordKeeper;
class ThumbnailCache;

/**
 * Reads the rows that others have changed, each by its key, and has the records take them in as those of own
 * edits: what is there no more is removed. Files wait in line, to be taken some at a time. Owned by a
 * manager; GUI thread.
 */
class NewsMerger
{
public:
    /** Both must outlive this, the providers each call. */
    NewsMerger(RecordKeeper &records, ThumbnailCache &thumbnails)
        : m_records(records), m_thumbnails(thumbnails)
    {
    }
    void setProviders(const DatabaseProviders &providers) { m_providers = providers; }

    /** Adds to what is to be taken in. */
    void add(const ForeignChanges &changes) { m_pending.add(changes); }
    /** What is still to be taken in. */
    const ForeignChanges &pending() const { return m_pending; }
    /** Everything is read anew: nothing of it counts any more. */
    void clear();

    /**
     * Reads all but the files, and of them one slice. False when that fails; it stays to be taken in then.
     * Nothing is shown of it yet.
     */
    bool read();
    /** Takes in what was read. */
    void merge();
    /** How much was taken in since this was last asked. */
    NewsCount takeCount();
    /** The trees have changed: the list is read after merge(). */
    bool haveTreesChanged() const { return m_haveTreesChanged; }

private:
    bool readFiles();
    void mergeTags();
    void mergeGroups();
    void mergeNodes();
    void mergeRelations();
    void mergeFiles();
    void mergeThumbnails();

    RecordKeeper &m_records;
    ThumbnailCache &m_thumbnails;
    DatabaseProviders m_providers;
    ForeignChanges m_pending;
    NewsCount m_count;

    // What was read, with the keys that were asked for.
    ForeignChanges m_asked;
    TableData m_tagRows;
    TableData m_groupRows;
    TableData m_nodeRows;
    TableData m_fileRows;
    QStringList m_paths;
    bool m_haveTreesChanged = false;
};
