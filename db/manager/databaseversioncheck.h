#pragma once

#include "app/settings/dbdetails.h"

#include <QCoreApplication>

class QSqlDatabase;
class QSqlError;
class UserPrompts;

/**
 * The questions before a database is opened: can it be read, is it one of ours, and may it be upgraded when
 * it is an old one. Works on "tempConnection", tells the user why not, and leaves no connection behind. Main
 * thread.
 */
class DatabaseVersionCheck
{
    Q_DECLARE_TR_FUNCTIONS(DatabaseVersionCheck)

public:
    /** The prompts are borrowed. */
    DatabaseVersionCheck(const DBDetails &details, UserPrompts &prompts);

    /** True when the database can be opened as it is now. A missing file gives false and is not made. */
    bool run() const;

private:
    enum Finding { Fit, Old, Unknown, Foreign, InUse };
    bool askUser(QSqlDatabase database) const;
    Finding examine(QSqlDatabase &database, bool isBegun) const;
    bool isFreeToRead(const QSqlDatabase &database) const;
    bool isLock(const QSqlError &error) const;
    bool upgrade(QSqlDatabase &database) const;
    void explainUnknown(const QSqlDatabase &database) const;
    void refuse(const QString &reason) const;

    DBDetails m_details;
    UserPrompts &m_prompts;
};
