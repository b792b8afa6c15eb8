#include "core/providers/generalprovider.h"

#include "db/abstractqueryconstructor.h"

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
    emit gotDBReadonly(!isWritable);
}

bool GeneralProvider::canWrite()
{
    const QString statement =
        constructor()->insertQuery({QStringLiteral("file_id"), QStringLiteral("tag_id")},
                                   QStringLiteral("file_tag"), {{QStringLiteral("0"), QStringLiteral("0")}}) +
        constructor()->statementEnd();
    // A refused write is this question's answer and no error; only a lost connection is worth telling.
    bool isLost = false;
    bool isWritable = false;
    {
        const QSignalBlocker silence(this);
        SyncRunner runner;
        connect(&runner, &QueryRunner::connectionError, &runner, [&isLost] { isLost = true; });
        TableData table;
        isWritable = beginTransaction() && runner.run(statement, table, QString());
        freeRows(table);
        rollbackTransaction();
    }
    if (isLost)
        emit connectionError();
    return isWritable;
}
