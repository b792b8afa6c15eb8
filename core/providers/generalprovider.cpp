#include "core/providers/generalprovider.h"

#include "db/sql/abstractqueryconstructor.h"
#include "db/sql/databaselock.h"

#include <QSignalBlocker>

GeneralProvider::GeneralProvider(const AbstractQueryConstructor *constructor, QObject *parent)
    : BaseDBProvider(constructor, parent)
{
}

bool GeneralProvider::lastChangeDate(QDateTime &)
{
    return false;
}

bool GeneralProvider::runStatements(const QStringList &, const QString &)
{
    return false;
}

void GeneralProvider::loadVersion()
{
    request(constructor()->selectQuery({QStringLiteral("version")}, QStringLiteral("vorna_version")) +
                constructor()->statementEnd(),
            &GeneralProvider::gotDBVerion);
}

void GeneralProvider::probeReadOnly()
{
    const bool isWritable = canWrite();
    if (!m_isInUse)
        emit gotDBReadonly(!isWritable);
}

bool GeneralProvider::canWrite()
{
    const QString statement =
        // A row that no file has, taken back in any case: only a write shows whether one may.
        constructor()->insertQuery({QStringLiteral("file_id"), QStringLiteral("tag_id")},
                                   QStringLiteral("file_tag"), {{QStringLiteral("0"), QStringLiteral("0")}}) +
        constructor()->statementEnd();
    // A refused write is this question's answer and no error; only a lost connection is worth telling.
    forgetLostConnection();
    bool isWritable = false;
    {
        const QSignalBlocker silence(this);
        isWritable = beginTransaction() && runSync(statement);
        rollbackTransaction();
    }
    m_isInUse = !isWritable && !isConnectionLost() &&
                DatabaseLock::isMetBy(lastError(), QSqlDatabase::database().driverName());
    if (isConnectionLost())
        emit connectionError();
    return isWritable;
}
