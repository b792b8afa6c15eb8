#pragma once

#include "db/autolinks/foldermatch.h"
#include "db/autolinks/linkpresence.h"
#include "fileops/looks/backgroundlooks.h"
#include "fileops/worker/autolinkoutcome.h"

#include <QElapsedTimer>
#include <QHash>
#include <QMap>
#include <QTimer>

#include <memory>

class AutoLinksHost;

/**
 * Takes what is new in linked folders to the worker. A round looks at all folders that are due, on a thread
 * of its own, compares what it found with the records, in steps, and reads only files of which a record has
 * the name and the size. What was written to a moment ago waits until it is whole. A round never nests: what
 * is asked for during one waits for the next. GUI thread.
 */
class AutoLinkSync : public QObject
{
    Q_OBJECT

public:
    /** Host and links must outlive this. */
    AutoLinkSync(AutoLinksHost &host, const Map<QString, AutoLink *> &links, QObject *parent = nullptr);

    /** Has the folder of a link looked at for a node; its other nodes get what is new there, too. */
    void request(const QString &linkId, qint64 nodeId, bool notifyDuplicates);
    /** The same for all its nodes, after an event: others follow, and what it tells of is hardly whole. */
    void requestForEvent(const QString &linkId);
    /** Ends the round and forgets all requests; none are taken any more. */
    void end();
    /** What the worker made of the files that it got. */
    void takeOutcome(const AutoLinkOutcome &outcome);

    /** Whether the database lies in the folder or below it. */
    static bool holdsDatabase(const QString &folder, const QString &databasePath);
    /** How long a file must have stood still, and when one that was taken is looked at again, for tests. */
    void setTimes(qint64 untilWhole, qint64 untilLookBack)
    {
        m_untilWhole = untilWhole;
        m_untilLookBack = untilLookBack;
    }

signals:
    /** The folders of all links were looked for, before a round. */
    void linksSeen(const QHash<QString, LinkPresence> &presences);

    void roundDone();

private:
    using ShouldEnd = BackgroundLooks::ShouldEnd;

    struct Request
    {
        qint64 due = 0;                  ///< milliseconds of the clock
        QHash<qint64, bool> notifyNodes; ///< node to whether duplicates are told of
    };
    struct Seen
    {
        QHash<QString, LinkPresence> presences;
        std::shared_ptr<FolderMatch> match;
    };
    /** A file that needs no second look, and the file of the database that stands for it. */
    struct StandIn
    {
        FolderFile file;
        qint64 fileId = 0; ///< 0 for what nothing can be taken of
    };
    /** Files that the worker got for a node. */
    struct Delivery
    {
        QString linkId;
        qint64 nodeId = 0;
        bool isOfAll = false; ///< not only what is new
        QHash<QString, FolderFile> files;
    };
    /** A file whose time is to come still, as another clock gave it. */
    struct Ahead
    {
        FileStamp stamp;
        qint64 since = 0;
    };

    void arm();
    void startRound();
    void requestLater(const QString &linkId, qint64 milliseconds);
    /** How long files that are whole wait for a younger one of their folder, in milliseconds. */
    qint64 holdOf(const QString &linkId, bool isHeld);
    static Seen look(const QHash<QString, LinkedFolder> &links, const QStringList &due,
                     const QString &databasePath, const ShouldEnd &shouldEnd);
    void takeSeen(const Seen &seen);
    void walk();
    static void readSuspects(QVector<LinkedFolder> &folders, const QString &databasePath,
                             const ShouldEnd &shouldEnd);
    /** Spares the reading of what was read before. */
    void passOverLeftOut(QVector<LinkedFolder> &folders) const;
    void noteRead(const QVector<LinkedFolder> &folders);
    void takeRead(QVector<LinkedFolder> folders);
    void serve(const LinkedFolder &folder);
    bool isOnItsWay(const QString &path, const FolderFile &file) const;
    bool isLeftOut(const QString &path, const FolderFile &file) const;
    /** How long a file has to wait until it is whole, in milliseconds; 0 for one that is. */
    qint64 waitOf(const QString &path, const FolderFile &file);
    void hand(AutoLink &link, qint64 nodeId, const QHash<QString, FolderFile> &files, bool isOfAll);
    void tellUnreadable(const LinkedFolder &folder);
    void settle(const Delivery &delivery, const AutoLinkOutcome &outcome);
    QVector<qint64> tagsOf(qint64 nodeId) const;

    AutoLinksHost &m_host;
    const Map<QString, AutoLink *> &m_links;
    QHash<QString, Request> m_requests;
    QHash<QString, Request> m_round; ///< those that the running round serves
    bool m_isRunning = false;
    bool m_isEnded = false;
    QTimer m_timer;
    QElapsedTimer m_clock; ///< of what is due; that of the day may be set back
    std::shared_ptr<FolderMatch> m_match;
    QHash<qint64, Delivery> m_deliveries;                ///< of which the worker has not said yet what became
    QHash<QString, QPair<FolderFile, int>> m_onTheirWay; ///< their files, and in how many
    qint64 m_lastRequest = 0;
    QHash<QString, StandIn> m_standIns;
    QHash<QString, Ahead> m_ahead;
    QHash<QString, int> m_waits;        ///< how often in turn something of a link's folder was not whole
    QHash<QString, qint64> m_heldSince; ///< when files of a link's folder began to wait for younger ones
    QHash<QString, QStringList> m_toldNames;
    qint64 m_untilWhole = 2000;
    qint64 m_untilLookBack = 30000;
    int m_failures = 0; ///< in turn
    BackgroundLooks m_looks;
};
