#pragma once

#include "app/settings/dbdetails.h"

#include <QCoreApplication>

class QSqlDatabase;
class QSqlError;

/**
 * The questions before a database is opened: can it be read, is it one of ours, and may it be upgraded when
 * it is an old one. Works on "tempConnection", shows the boxes, and leaves no connection behind. Main thread.
 */
class DatabaseVersionCheck
{
    Q_DECLARE_TR_FUNCTIONS(DatabaseVersionCheck)

public:
    explicit DatabaseVersionCheck(const DBDetails &details);

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
    static void refuse(const QString &reason);

    DBDetails m_details;
};
