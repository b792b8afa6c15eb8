#pragma once

#include "fileops/looks/backgroundlooks.h"

#include <QFileSystemWatcher>
#include <QHash>
#include <QStringList>
#include <QTimer>

/**
 * Tells when files come to folders, go from them or get other names. The system watches; what it does not
 * take, as its number of watches is limited, is looked at in slow turns. So are all others, as a watch stays
 * with a folder that got another name, or under a disk that was mounted over it. GUI thread.
 */
class FolderWatch : public QObject
{
    Q_OBJECT

public:
    explicit FolderWatch(QObject *parent = nullptr);

    /** These are watched from now on, no others. A folder that is not there is watched when it comes. */
    void setFolders(const QStringList &folders);
    QStringList folders() const { return m_folders.keys(); }
    /** Ends all of it, and waits for a look that is running. */
    void end();

signals:
    void changed(QString folder);
    /** The system does not watch this many of the folders; once, until it takes all again. */
    void limitReached(int folders, int secondsBetweenLooks);

protected:
    /** Asks the system; false when it does not take the folder. */
    virtual bool watch(const QString &folder);

private:
    /** How a folder looked; all 0 for one that is not there. */
    struct Look
    {
        bool isTaken = false; ///< false until the first look
        bool isReadable = false;
        quint64 device = 0;
        quint64 node = 0;
        qint64 changed = 0;

        bool isThere() const { return node != 0; }
        bool isSameFolder(const Look &other) const { return device == other.device && node == other.node; }
    };

    struct Folder
    {
        Look look;
        qint64 since = 0;     ///< nanoseconds since 1970: changes from here on are news
        int watchedAfter = 0; ///< looks that began before the system watched it; 0 once a later one was taken
    };

    static Look lookAt(const QString &folder);
    void lookAtAll();
    void takeLooks(const QHash<QString, Look> &looks, int number);
    bool watchAnew(const QString &folder);
    void tellLimit();

    QFileSystemWatcher m_watcher;
    QHash<QString, Folder> m_folders;
    QTimer m_turn;
    BackgroundLooks m_looks;
    int m_lastLook = 0;
    bool m_isLimitTold = false;
};
