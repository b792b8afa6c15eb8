#pragma once

#include "fileops/adding/leftoutfiles.h"

#include <QSet>
#include <QStringList>
#include <QVector>

#include <functional>

/** A dropped folder or one below it. */
struct ExpandedFolder
{
    QString path;         ///< absolute and clean
    QString relativePath; ///< from the parent of the dropped folder, so it begins with that folder's name
    int parent = -1;      ///< index of the folder above; -1 for a dropped one
};

/**
 * Turns dropped paths into folders and files, reading each folder once and no file at all. Links are followed
 * at the top only, so there are no loops; hidden entries, pipes, sockets, devices and folders without rights
 * are left out; a path that comes twice counts once. Any thread.
 */
class FolderExpansion
{
public:
    using AtPath = std::function<void(const QString &path)>;

    /** `shouldEnd` is asked at each path and ends the walk with what there is; `atPath` hears of it before.
     */
    explicit FolderExpansion(const std::function<bool()> &shouldEnd = {}, const AtPath &atPath = {})
        : m_shouldEnd(shouldEnd), m_atPath(atPath)
    {
    }

    void expand(const QStringList &droppedPaths);

    /** A folder always stands behind the one above it. */
    const QVector<ExpandedFolder> &folders() const { return m_folders; }
    /** The dropped files, then those of the folders. */
    QStringList files() const { return m_files; }
    const LeftOutFiles &leftOut() const { return m_leftOut; }

    /** The absolute path without dots, repeated and trailing slashes. */
    static QString cleaned(const QString &path);

private:
    void leaveOut(const QString &path);
    void addDroppedFile(const QString &path);
    void walk(const QString &topFolder);
    void listFolder(int index);
    bool addFolder(const QString &path, const QString &relativePath, int parent);
    bool shouldEnd() const { return m_shouldEnd && m_shouldEnd(); }
    void tellPath(const QString &path) const;

    std::function<bool()> m_shouldEnd;
    AtPath m_atPath;
    QVector<ExpandedFolder> m_folders;
    QStringList m_files;
    LeftOutFiles m_leftOut;
    QSet<QString> m_folderPaths;
    QSet<QString> m_droppedFiles;
};
