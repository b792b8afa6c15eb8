#pragma once

#include <QCoreApplication>
#include <QtGlobal>

class DatabaseManger;
class FileRenaming;
class QString;
class UserPrompts;

/**
 * Gives files other names in the database, external ones on the disk first. A try shows no box, so that it
 * may run while an editor is still open, which the loop of a box would delete under the view's feet; what is
 * left to tell or to ask follows in settle(). GUI thread.
 */
class FileRenamer
{
    Q_DECLARE_TR_FUNCTIONS(FileRenamer)

public:
    enum Outcome { Unchanged, Renamed, NameForbidden, AddressForbidden, NameTaken, DiskRefused };

    /** Borrowed; without a manager nothing is renamed. */
    FileRenamer(DatabaseManger *manager, UserPrompts &prompts) : m_manager(manager), m_prompts(prompts) {}

    /** The name is trimmed. */
    Outcome tryRename(qint64 fileId, const QString &name) const;
    /** Tells why a try failed; a taken name may be had after a question. */
    void settle(Outcome outcome, qint64 fileId, const QString &name) const;

private:
    /** Whether the path is that of an external file. */
    bool isRecorded(const QString &path) const;
    void askAndRename(qint64 fileId, const QString &name) const;
    Outcome store(FileRenaming &renaming, qint64 fileId, const QString &name) const;
    /** Tells why there is no new name. */
    void refuse(const QString &reason) const;

    DatabaseManger *m_manager;
    UserPrompts &m_prompts;
};
