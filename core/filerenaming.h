#pragma once

#include <QString>

/**
 * The renaming of one file on the disk that is undone unless keep() is called: the database follows the disk,
 * and when it cannot, the file gets its old name back. Never replaces another file.
 */
class FileRenaming
{
public:
    /** The paths of the file as recorded, the relative one perhaps empty, and a name without a folder. */
    FileRenaming(const QString &path, const QString &relPath, const QString &newName);
    ~FileRenaming();
    FileRenaming(const FileRenaming &) = delete;
    FileRenaming &operator=(const FileRenaming &) = delete;

    /** Whether something has the new name already, be it a link that leads nowhere. */
    bool isNameTaken() const;
    bool run();
    void keep() { m_isDone = false; }

    const QString &newPath() const { return m_newPath; }
    const QString &newRelPath() const { return m_newRelPath; }

private:
    QString m_path;
    QString m_newPath;
    QString m_newRelPath;
    bool m_isDone = false;
};
