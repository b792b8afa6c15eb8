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
    /** `shouldEnd` is asked before each folder and ends the walk with what there is. */
    explicit FolderExpansion(const std::function<bool()> &shouldEnd = {}) : m_shouldEnd(shouldEnd) {}

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

    std::function<bool()> m_shouldEnd;
    QVector<ExpandedFolder> m_folders;
    QStringList m_files;
    LeftOutFiles m_leftOut;
    QSet<QString> m_folderPaths;
    QSet<QString> m_droppedFiles;
};
