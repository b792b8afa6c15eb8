#pragma once

#include <QString>

/**
 * The renaming of one file on the disk that is undone unless keep() is called: the database follows the disk,
 * and when it cannot, the file gets its old name back, and one that it replaced its place.
 */
class FileRenaming
{
public:
    /** The paths of the file as recorded, the relative one perhaps empty, and a name without a folder. */
    FileRenaming(const QString &path, const QString &relPath, const QString &newName);
    ~FileRenaming();
    FileRenaming(const FileRenaming &) = delete;
    FileRenaming &operator=(const FileRenaming &) = delete;

    /** Whether something else has the new name already, be it a link that leads nowhere. A disk that knows no
        difference of case finds the file itself under its name in another case, which is not taken. */
    bool isNameTaken() const;
    /** Whether what has the name is a file, which can be replaced. */
    bool isReplaceable() const;
    /** Never replaces another file, not even one that came a moment ago. */
    bool run();
    /** Takes the place of the file that has the new name, in one step: at no moment is there none. */
    bool runReplacing();
    /** Makes the renaming final. */
    void keep();

    const QString &newPath() const { return m_newPath; }
    const QString &newRelPath() const { return m_newRelPath; }

private:
    bool isOwnNameInOtherCase() const;
    bool backUpTarget();
    void removeBackup();

    QString m_path;
    QString m_newPath;
    QString m_newRelPath;
    QString m_backupPath; ///< what was replaced, until the renaming is final
    bool m_isDone = false;
};
