#pragma once

#include "core/providers/pathchange.h"

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
    /** Brings the records of the files along. A database that is read-only takes no changes, the records do.
     */
    virtual Writing writePaths(const PathChanges &changes) = 0;
};

/**
 * Mends the two paths of external files, the absolute one and the one that starts at the folder of the
 * database: where one of them still leads to the file, the other is written anew. So a database may move
 * together with its files, or away from them. Works in slices between the events of the window, each with one
 * transaction; a new list takes the place of the rest of the last one. GUI thread.
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
    bool isRunning() const { return m_timer.isActive(); }
    /** One file at once. False when neither path leads to it. */
    bool relinkNow(const QString &databasePath, qint64 fileId);

private:
    enum Found { Nowhere, InPlace, Mended };

    void setDatabase(const QString &databasePath);
    QString pathFromFolder(const QString &relPath) const;
    Found look(const File &file);
    void runSlice();
    void writeSlice();

    PathRelinkerHost &m_host;
    QString m_databasePath;
    QString m_folder;
    QVector<qint64> m_fileIds;
    int m_next = 0;
    PathChanges m_changes;
    QTimer m_timer;
};
