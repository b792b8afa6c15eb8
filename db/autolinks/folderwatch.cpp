#include "db/autolinks/folderwatch.h"

#include <QDateTime>
#include <QFile>
#include <QSet>

#include <sys/stat.h>
#include <unistd.h>

namespace {
constexpr int secondsBetweenTurns = 30;
}

FolderWatch::FolderWatch(QObject *parent) : QObject(parent), m_watcher(this), m_turn(this)
{
    m_turn.setInterval(secondsBetweenTurns * 1000);
    m_turn.setObjectName(QStringLiteral("folderTurn"));
    connect(&m_turn, &QTimer::timeout, this, &FolderWatch::lookAtAll);
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, &FolderWatch::changed);
}

void FolderWatch::setFolders(const QStringList &folders)
{
    const QSet<QString> wanted(folders.cbegin(), folders.cend());
    for (const QString &folder : m_folders.keys()) {
        if (wanted.contains(folder))
            continue;
        m_watcher.removePath(folder);
        m_folders.remove(folder);
    }
    // Times of files are coarser than those of clocks.
    const qint64 now = (QDateTime::currentMSecsSinceEpoch() - 20) * 1000000;
    for (const QString &folder : folders) {
        if (m_folders.contains(folder))
            continue;
        m_folders.insert(folder, {Look(), now, 0});
    }
    if (m_folders.isEmpty())
        m_turn.stop();
    else if (!m_turn.isActive())
        m_turn.start();
    // The system is asked for those that are seen, as a disk that does not answer would hold the window.
    lookAtAll();
}

void FolderWatch::end()
{
    m_turn.stop();
    m_looks.end();
    if (!m_watcher.directories().isEmpty())
        m_watcher.removePaths(m_watcher.directories());
    m_folders.clear();
}

bool FolderWatch::watch(const QString &folder)
{
    return m_watcher.addPath(folder);
}

FolderWatch::Look FolderWatch::lookAt(const QString &folder)
{
    struct stat status = {};
    if (::stat(QFile::encodeName(folder).constData(), &status) != 0 || !S_ISDIR(status.st_mode))
        return {true};
    const bool isReadable = ::access(QFile::encodeName(folder).constData(), R_OK) == 0;
    return {true, isReadable, status.st_dev, status.st_ino,
            status.st_mtim.tv_sec * 1000000000 + status.st_mtim.tv_nsec};
}

void FolderWatch::lookAtAll()
{
    const QStringList folders = m_folders.keys();
    if (folders.isEmpty())
        return;
    m_looks.run(
        [folders](const BackgroundLooks::ShouldEnd &shouldEnd) {
            QHash<QString, Look> looks;
            for (const QString &folder : folders) {
                if (!shouldEnd())
                    looks.insert(folder, lookAt(folder));
            }
            return looks;
        },
        [this, number = ++m_lastLook](const QHash<QString, Look> &looks) { takeLooks(looks, number); });
}

void FolderWatch::takeLooks(const QHash<QString, Look> &looks, int number)
{
    const QStringList directories = m_watcher.directories();
    const QSet<QString> watched(directories.cbegin(), directories.cend());
    bool isAnyNew = false;
    for (auto look = looks.cbegin(); look != looks.cend(); ++look) {
        const auto known = m_folders.find(look.key());
        if (known == m_folders.end())
            continue;
        const Look before = known->look;
        known->look = *look;
        if (!look->isThere()) {
            // The system does not tell of a folder that got another name.
            if (before.isThere() || !before.isTaken)
                emit changed(look.key());
            continue;
        }
        const bool isSame = look->isSameFolder(before);
        const bool isTold = watched.contains(look.key()) && known->watchedAfter == 0;
        if (number > known->watchedAfter)
            known->watchedAfter = 0;
        // A folder that came back under this name is another one for the system.
        if ((!watched.contains(look.key()) || (before.isTaken && !isSame)) && watchAnew(look.key())) {
            known->watchedAfter = m_lastLook;
            isAnyNew = true;
        }
        const bool isNews = before.isTaken ? look->changed != before.changed : look->changed >= known->since;
        if ((before.isTaken && !isSame) || (!isTold && isNews))
            emit changed(look.key());
    }
    // For what came between the look and the watch.
    if (isAnyNew)
        lookAtAll();
    tellLimit();
}

bool FolderWatch::watchAnew(const QString &folder)
{
    m_watcher.removePath(folder);
    return watch(folder);
}

void FolderWatch::tellLimit()
{
    const QStringList directories = m_watcher.directories();
    const QSet<QString> watched(directories.cbegin(), directories.cend());
    int left = 0;
    for (auto folder = m_folders.cbegin(); folder != m_folders.cend(); ++folder) {
        if (folder->look.isThere() && folder->look.isReadable && !watched.contains(folder.key()))
            ++left;
    }
    const bool isTold = m_isLimitTold;
    m_isLimitTold = left > 0;
    if (left > 0 && !isTold)
        emit limitReached(left, secondsBetweenTurns);
}
