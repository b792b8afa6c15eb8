#include "db/manager/closeddatabase.h"

#include "app/settings/constants.h"
#include "db/sql/connections.h"
#include "db/sql/drivertexts.h"
#include "db/sql/longtext.h"
#include "db/sql/readbound.h"
#include "db/sql/schemacheck.h"

#include <QSqlDatabase>
#include <QSqlQuery>

namespace {
// In milliseconds.
const QString shortBusyTimeout = QStringLiteral("QSQLITE_BUSY_TIMEOUT=250");

/** Neither locked, which each later look would wait for anew, nor made by another program. */
bool isFitToRead(QSqlDatabase database)
{
    return database.transaction() &&
           QSqlQuery(database).exec(QStringLiteral("SELECT 1 FROM sqlite_master;")) &&
           !SchemaCheck::holdsForeignParts(database);
}
} // namespace

QStringList ClosedDatabase::tagNames() const
{
    QStringList names;
    const QString name = Constants::temporaryConnection;
    const bool isLocal = m_details.type() == Constants::localDatabase;
    if (!Connections::isDatabaseThere(m_details) ||
        !Connections::open(name, m_details, isLocal ? shortBusyTimeout : QString()).isOpen)
        return names;
    const auto read = [&names, &name, isLocal] {
        const ReadBound bound(QSqlDatabase::database(name, false));
        if (isLocal && !isFitToRead(QSqlDatabase::database(name, false)))
            return;
        QSqlQuery query(QSqlDatabase::database(name, false));
        query.setForwardOnly(true);
        query.exec(QStringLiteral("SELECT tag_name FROM tags"));
        while (query.next())
            names.append(LongText::kept(DriverTexts::read(query, 0).toString()));
    };
    // In a function of its own: the connection is closed only when no query on it is left.
    read();
    Connections::close(name);
    return names;
}
