#include "fileops/adding/folderexpansion.h"

#include "fileops/files/folderentries.h"

#include <QDebug>
#include <QDir>
#include <QFileInfo>

namespace {

/** True when a folder above the path is among the folders. */
bool isBelowOneOf(const QString &path, const QSet<QString> &folders)
{
    for (int slash = path.lastIndexOf(QLatin1Char('/')); slash > 0;
         slash = path.lastIndexOf(QLatin1Char('/'), slash - 1)) {
        if (folders.contains(path.left(slash)))
            return true;
    }
    return path.size() > 1 && folders.contains(QStringLiteral("/"));
}

/** Those below another one come last, so that its walk has met them by then, unless they are hidden there. */
QStringList outerFirst(const QStringList &folders)
{
    const QSet<QString> all(folders.cbegin(), folders.cend());
    QStringList outer;
    QStringList inner;
    for (const QString &folder : folders)
        (isBelowOneOf(folder, all) ? inner : outer).append(folder);
    return outer + inner;
}

} // namespace

QString FolderExpansion::cleaned(const QString &path)
{
    return QDir::cleanPath(QFileInfo(path).absoluteFilePath());
}

void FolderExpansion::expand(const QStringList &droppedPaths)
{
    QStringList folders;
    for (const QString &dropped : droppedPaths) {
        if (shouldEnd())
            return;
        const QString path = cleaned(dropped);
        tellPath(path);
        const QFileInfo info(path);
        if (info.isDir())
            folders.append(path);
        else if (info.isFile())
            addDroppedFile(path);
        else
            leaveOut(path);
    }
    for (const QString &folder : outerFirst(folders))
        walk(folder);
}

void FolderExpansion::tellPath(const QString &path) const
{
    if (m_atPath)
        m_atPath(path);
}

void FolderExpansion::leaveOut(const QString &path)
{
    qDebug() << "No file or folder:" << path;
    // What stands in a name for bytes that are no text leads nowhere.
    const bool isLost = path.contains(QChar(QChar::ReplacementCharacter)) && !QFileInfo::exists(path);
    (isLost ? m_leftOut.unreadableNames : m_leftOut.unreadable).append(path);
}

void FolderExpansion::addDroppedFile(const QString &path)
{
    if (m_droppedFiles.contains(path))
        return;
    m_droppedFiles.insert(path);
    m_files.append(path);
}

void FolderExpansion::walk(const QString &topFolder)
{
    const int first = m_folders.size();
    addFolder(topFolder, topFolder.mid(topFolder.lastIndexOf(QLatin1Char('/')) + 1), -1);
    for (int i = first; i < m_folders.size() && !shouldEnd(); ++i)
        listFolder(i);
}

bool FolderExpansion::addFolder(const QString &path, const QString &relativePath, int parent)
{
    if (m_folderPaths.contains(path))
        return false;
    const QFileInfo info(path);
    if (!info.isReadable() || !info.isExecutable()) {
        qDebug() << "No right to read the folder" << path;
        m_leftOut.unreadable.append(path);
        return false;
    }
    m_folderPaths.insert(path);
    m_folders.append({path, relativePath, parent});
    return true;
}

void FolderExpansion::listFolder(int index)
{
    const ExpandedFolder folder = m_folders.at(index);
    tellPath(folder.path);
    const QString prefix =
        folder.path.endsWith(QLatin1Char('/')) ? folder.path : folder.path + QLatin1Char('/');
    const QString relativePrefix =
        folder.relativePath.isEmpty() ? QString() : folder.relativePath + QLatin1Char('/');
    const FolderEntries entries = FolderEntries::of(folder.path, m_shouldEnd);
    for (const QString &name : entries.folders)
        addFolder(prefix + name, relativePrefix + name, index);
    for (const QString &name : entries.files) {
        const QString path = prefix + name;
        if (m_droppedFiles.isEmpty() || !m_droppedFiles.contains(path))
            m_files.append(path);
    }
    for (const QString &name : entries.unreadableFiles)
        m_leftOut.unreadableNames.append(prefix + name);
    for (const QString &name : entries.unreadableFolders)
        m_leftOut.unreadableNamesOfFolders.append(prefix + name);
    m_leftOut.filesOutOfReach += entries.filesOutOfReach;
    if (!entries.isWhole)
        m_leftOut.unreadable.append(folder.path);
}
