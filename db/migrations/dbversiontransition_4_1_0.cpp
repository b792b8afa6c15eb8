#include "db/migrations/dbversiontransition_4_1_0.h"

#include "app/settings/constants.h"
#include "db/migrations/migrationstatements.h"
#include "db/sql/abstractqueryconstructor.h"
#include "db/sql/sqltext.h"

#include <QDebug>
#include <QSqlQuery>
#include <QSqlRecord>

namespace {
const QLatin1String storageCheck("(storage_id >= 0)");

/** The table `files` as it is to be, one element per place where the statement breaks. */
QStringList columnDefinitions()
{
    return {QStringLiteral("file_id INTEGER PRIMARY KEY"),
            QStringLiteral("file_name TEXT"),
            QStringLiteral("file_description TEXT"),
            QStringLiteral("file_size INTEGER NOT NULL "),
            QStringLiteral("addition_date INTEGER NOT NULL "),
            QStringLiteral("modification_date INTEGER NOT NULL,id_code CHARACTER(7) NOT NULL UNIQUE"),
            QStringLiteral("load_id INTEGER NOT NULL, storage_id INTEGER NOT NULL CHECK(storage_id>=0) "),
            QStringLiteral("thumbnail_id INTEGER "),
            QStringLiteral("data_checksum INTEGER NOT NULL"),
            QStringLiteral("internal INTEGER NOT NULL"),
            QStringLiteral(" CONSTRAINT checksum_valid CHECK(data_checksum>=0)")};
}

QStringList columnNames()
{
    return {
        QStringLiteral("file_id"),      QStringLiteral("file_name"),     QStringLiteral("file_description"),
        QStringLiteral("file_size"),    QStringLiteral("addition_date"), QStringLiteral("modification_date"),
        QStringLiteral("id_code"),      QStringLiteral("load_id"),       QStringLiteral("storage_id"),
        QStringLiteral("thumbnail_id"), QStringLiteral("data_checksum"), QStringLiteral("internal")};
}

bool hasExpectedColumns(const QSqlDatabase &database)
{
    const QSqlRecord record = database.record(QStringLiteral("files"));
    QStringList names;
    for (int i = 0; i < record.count(); ++i)
        names.append(record.fieldName(i).toLower());
    QStringList expected = columnNames();
    names.sort();
    expected.sort();
    return names == expected;
}

/** Old files need not have their columns in today's order: the copy of a rebuild names them. */
QStringList withNamedCopy(QStringList statements)
{
    const QString columns = columnNames().join(QLatin1Char(','));
    const int copy = statements.indexOf(QStringLiteral("INSERT INTO filesnew SELECT * FROM files;"));
    if (copy >= 0) {
        statements[copy] =
            SqlText::fill(QStringLiteral("INSERT INTO filesnew (%1) SELECT %1 FROM files;"), {columns});
    }
    return statements;
}

struct Answer
{
    bool hasRun = false;
    int rows = -1;
    QString text; ///< the first value
};

/** Asks in a savepoint: on a server a failed question would spoil the transaction around it. */
Answer ask(const QSqlDatabase &database, const QString &question)
{
    Answer answer;
    if (question.isEmpty())
        return answer;
    QSqlQuery savepoint(database);
    savepoint.exec(QStringLiteral("SAVEPOINT P1;"));
    QSqlQuery query(database);
    answer.hasRun = query.exec(question);
    answer.rows = query.size();
    if (answer.hasRun && query.first())
        answer.text = query.value(0).toString();
    query.finish();
    if (!answer.hasRun)
        savepoint.exec(QStringLiteral("ROLLBACK TO SAVEPOINT P1;"));
    savepoint.exec(QStringLiteral("RELEASE SAVEPOINT P1;"));
    return answer;
}

void logConstraintFailure(const QSqlError &error, const QString &statement)
{
    qDebug() << "DBVersionTransition_4_1_0 :" << error.text() << "in" << statement;
}
} // namespace

DBVersionTransition_4_1_0::DBVersionTransition_4_1_0(const AbstractQueryConstructor *constructor)
    : m_constructor(constructor)
{
}

bool DBVersionTransition_4_1_0::run(QSqlDatabase database)
{
    qDebug() << "DataBase migrating to v 4.1.0";
    if (!database.transaction()) {
        logConstraintFailure(database.lastError(), QString());
        return false;
    }
    if (!stamp(database) || !changeConstraints(database)) {
        database.rollback();
        return false;
    }
    if (database.commit())
        return true;
    logConstraintFailure(database.lastError(), QString());
    database.rollback();
    return false;
}

bool DBVersionTransition_4_1_0::stamp(const QSqlDatabase &database) const
{
    const QStringList version{Constants::schemaVersion};
    QStringList statements;
    if (MigrationStatements::hasTable(database, QStringLiteral("scheme_version"))) {
        statements += SqlText::fill(QStringLiteral("UPDATE scheme_version SET version='%1';"), version);
    } else {
        statements += QStringLiteral("CREATE TABLE scheme_version (version TEXT);");
        statements +=
            SqlText::fill(QStringLiteral("INSERT INTO scheme_version (version) VALUES ('%1');"), version);
    }
    const auto log = MigrationStatements::logAs("DBVersionTranstion_4_1_0 :");
    for (const QString &statement : qAsConst(statements)) {
        if (!MigrationStatements::run(database, {statement}, log))
            return false;
        qDebug() << "SUCCESS DBVersionTransition_4_1_0 :"
                 << "in" << statement;
    }
    return true;
}

bool DBVersionTransition_4_1_0::changeConstraints(const QSqlDatabase &database) const
{
    const QStringList statements = constraintStatements(database);
    const bool isRebuilt = statements.contains(QStringLiteral("DROP TABLE files;"));
    if (isRebuilt && !hasExpectedColumns(database)) {
        qDebug() << "DBVersionTransition_4_1_0 :"
                 << "unexpected columns"
                 << "in"
                 << "files";
        return false;
    }
    return MigrationStatements::run(database, statements, logConstraintFailure);
}

QStringList DBVersionTransition_4_1_0::constraintStatements(const QSqlDatabase &database) const
{
    const QString files = QStringLiteral("files");
    const QString kindCheck = QStringLiteral("internal_bool");
    const QString storageCheckName = QStringLiteral("files_storage_id_check");
    // Older programs let negative checksums pass, the new table does not: 0 means "none".
    QStringList statements{QStringLiteral("UPDATE files SET data_checksum=0 WHERE data_checksum<0;")};
    const Answer kind = ask(database, m_constructor->constraintExistsQuery(files, kindCheck));
    if (!kind.hasRun || kind.rows > 0)
        statements +=
            withNamedCopy(m_constructor->dropConstraintQueries(files, kindCheck, columnDefinitions()));
    const Answer check = ask(database, m_constructor->constraintDefinitionQuery(files, storageCheckName));
    if ((!check.hasRun || check.rows >= 0) && check.text != storageCheck) {
        statements += withNamedCopy(m_constructor->addConstraintQueries(
            files, storageCheckName, QLatin1String("CHECK ") + storageCheck, columnDefinitions()));
    }
    return statements;
}
