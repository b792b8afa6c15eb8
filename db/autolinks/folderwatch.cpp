#include "db/autolinks/folderwatch.h"

#include <QFile>

#include <sys/stat.h>

namespace {
constexpr int secondsBetweenTurns = 30;
}

FolderWatch::FolderWatch(QObject *parent) : QObject(parent), m_turn(this)
{
    m_turn.setInterval(secondsBetweenTurns * 1000);
    m_turn.setObjectName(QStringLiteral("folderTurn"));
    connect(&m_turn, &QTimer::timeout, this, &FolderWatch::lookAtAll);
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, &FolderWatch::changed);
}

void FolderWatch::setFolders(const QStringList &folders)
{
    for (const QString &folder : m_folders.keys()) {
        if (folders.contains(folder))
            continue;
        m_watcher.removePath(folder);
        m_folders.remove(folder);
    }
    for (const QString &folder : folders) {
        if (m_folders.contains(folder))
            continue;
        m_folders.insert(folder, Look());
        watch(folder);
    }
    if (m_folders.isEmpty())
        m_turn.stop();
    else if (!m_turn.isActive())
        m_turn.start();
    // How they look now is what later turns compare with.
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
    return {true, status.st_dev, status.st_ino, status.st_mtim.tv_sec * 1000000000 + status.st_mtim.tv_nsec};
}

void FolderWatch::lookAtAll()
{
    const QStringList folders = m_folders.keys();
    if (folders.isEmpty())
        return;
    m_looks.run(
        [this, folders] {
            QHash<QString, Look> looks;
            for (const QString &folder : folders) {
                if (!m_looks.shouldEnd())
                    looks.insert(folder, lookAt(folder));
            }
            return looks;
        },
        [this](const QHash<QString, Look> &looks) { takeLooks(looks); });
}

void FolderWatch::takeLooks(const QHash<QString, Look> &looks)
{
    for (auto look = looks.cbegin(); look != looks.cend(); ++look) {
        const auto known = m_folders.find(look.key());
        if (known == m_folders.end())
            continue;
        const Look before = *known;
        *known = *look;
        // The system does not tell of a folder that got another name.
        if (before.isThere() && !look->isThere())
            emit changed(look.key());
        if (!look->isThere())
            continue;
        const bool isWatched = m_watcher.directories().contains(look.key());
        // A folder that came back under this name is another one for the system.
        if (!isWatched || (before.isTaken && !look->isSameFolder(before)))
            watchAnew(look.key());
        if (before.isTaken &&
            (!look->isSameFolder(before) || (!isWatched && look->changed != before.changed)))
            emit changed(look.key());
    }
    tellLimit();
}

void FolderWatch::watchAnew(const QString &folder)
{
    m_watcher.removePath(folder);
    watch(folder);
}

void FolderWatch::tellLimit()
{
    const QStringList watched = m_watcher.directories();
    int left = 0;
    for (auto look = m_folders.cbegin(); look != m_folders.cend(); ++look) {
        if (look->isThere() && !watched.contains(look.key()))
            ++left;
    }
    const bool isTold = m_isLimitTold;
    m_isLimitTold = left > 0;
    if (left > 0 && !isTold)
        emit limitReached(left, secondsBetweenTurns);
}
