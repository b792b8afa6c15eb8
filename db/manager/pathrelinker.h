#pragma once

#include "core/providers/pathchange.h"
#include "fileops/looks/backgroundlooks.h"

#include <QObject>
#include <QString>
#include <QTimer>
#include <QVector>

#include <functional>

class File;

/** What PathRelinker asks of the manager that owns it. GUI thread. */
class PathRelinkerHost
{
public:
    enum Writing { Written, Busy, NotWritten };

    virtual ~PathRelinkerHost() = default;
    /** Null for an unknown one. */
    virtual const File *fileToRelink(qint64 fileId) const = 0;
    /**
     * Brings the records of the files along, and waits for no lock. A database that is read-only takes no
     * changes, the records do.
     */
    virtual Writing writePaths(const PathChanges &changes) = 0;
    /** Changes the records alone. */
    virtual void showPaths(const PathChanges &changes) = 0;
};

/**
 * Mends the two paths of external files, the absolute one and the one that starts at the folder of the
 * database: where one of them still leads to the file, the other is written anew. So a database may move
 * together with its files, or away from them. The files are looked at beside the window, which a disk that
 * does not answer would hold, and their records changed in slices, each with one transaction; a new list
 * takes the place of the rest of the last one. Whoever locks the database is asked ever more seldom. GUI
 * thread.
 */
class PathRelinker : public QObject
{
    Q_OBJECT

public:
    /** The host must outlive this. */
    PathRelinker(PathRelinkerHost &host, QObject *parent);

    /** A file that lacks one of its paths ends the run. */
    void start(const QString &databasePath, const QVector<qint64> &fileIds);
    void stop();
    bool isRunning() const { return m_timer.isActive() || m_isLooking; }
    /**
     * One file at once, and as far as the disk answers in a moment. False when neither path leads to it; what
     * the disk did not say in time is mended when it does.
     */
    bool relinkNow(const QString &databasePath, qint64 fileId);

private:
    /** A file and where it may be. */
    struct Place
    {
        qint64 fileId = 0;
        QString path;
        QString relPath;
    };
    struct Mending
    {
        Place place;
        PathChange change;
    };
    using Mendings = QVector<Mending>;
    enum Found { Nowhere, InPlace, Mended };

    static bool isRelinkable(const File *file);
    static Found look(const Place &place, const QString &databasePath, Mendings &mendings);
    /** Whether the record says what it said when the file was looked for. */
    bool isCurrent(const Mending &mending) const;
    void mendNow(const Mendings &mendings);
    void goOn();
    void gatherSlice();
    void takeSlice(const Mendings &found);
    void writeSlice();

    PathRelinkerHost &m_host;
    QString m_databasePath;
    QVector<qint64> m_fileIds;
    int m_next = 0;
    Mendings m_mendings;
    QTimer m_timer;
    int m_refusals = 0; ///< in turn
    bool m_isLooking = false;
    BackgroundLooks m_looks;
    BackgroundLooks m_looksNow;
};
