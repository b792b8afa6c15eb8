#pragma once

#include "core/providers/changejournal.h"
#include "db/manager/newsmerger.h"

#include <QTimer>

#include <functional>

class ErrorTeller;

/**
 * Follows what others do in a database on a server that keeps a journal: listens for their commits, takes in
 * what they changed, and stands before and behind each edit. An edit of records that others have changed
 * meanwhile is dropped; all others go on. Without a journal it does nothing. Owned by the manager; GUI
 * thread.
 */
class ForeignNews : public QObject
{
    Q_OBJECT

public:
    /** Their commits come in groups: they are taken in together. */
    static constexpr int gatheringMilliseconds = 200;

    /** Borrowed, all of it. */
    ForeignNews(const AbstractQueryConstructor *constructor, RecordKeeper &records,
                ThumbnailCache &thumbnails, ErrorTeller &errors, QObject *parent);
    /** Before the connection is opened. News wait as long as nothing may be taken in. */
    void setUp(const DatabaseProviders &providers, const std::function<bool()> &mayMerge);

    /** The connection has been opened. */
    void listen() { m_journal.listen(); }
    /** All records are about to be read. */
    void aboutToLoad();
    /** For a database that closes. */
    void stop();
    bool isThere() const { return m_journal.isThere(); }
    BaseDBProvider *provider() { return &m_journal; }
    StatementQueue &queue() { return m_journal.queue(); }

    /** Takes in what is new; whether an edit may go on that rests on this. Else it is dropped. */
    bool mayEdit(const EditBase &base);
    /** The same with the begin of the transaction of the edit. */
    bool begin(const EditBase &base);
    /**
     * Whether an edit that has begun may go on that rests on this, too: what was taken in before it counts.
     * It is dropped when it may not.
     */
    bool mayTouch(const EditBase &base);
    /** Ends the transaction. Outdated: another try finds out whether it is to be dropped. */
    ChangeJournal::Commit commit();
    void rollBack();

signals:
    /** An edit does not go on, as others have changed what it was to change. */
    void editDropped();
    /** Nothing that is known holds any more. */
    void fullReloadDue();
    void treesChanged();
    /** Around the taking in of a part. */
    void aboutToMerge();
    void partMerged();
    /** What others changed has been taken in. */
    void merged(NewsCount count);

private:
    enum Reading { Read, NotRead, TooMuch };
    void mergeLater(int milliseconds = gatheringMilliseconds);
    void mergeWhenFree();
    Reading read();
    void merge();
    bool takeIn(const ForeignChanges &changes, const EditBase &base);
    bool drop();

    ErrorTeller &m_errors;
    ChangeJournal m_journal;
    NewsMerger m_merger;
    std::function<bool()> m_mayMerge;
    QTimer m_timer;
    EditBase m_base;             ///< of the edit that has begun
    ForeignChanges m_justMerged; ///< before it began
};
