#include "db/sql/schemacheck.h"

#include "db/sql/schema.h"

#include <QHash>
#include <QRegularExpression>
#include <QSet>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QVariant>

namespace {
using Pattern = QRegularExpression;

// SQLite writes the beginning of these texts itself, in capitals and with single blanks.
const QLatin1String tableStart("CREATE TABLE ");
const QLatin1String indexStart("CREATE INDEX ");
const QLatin1String uniqueIndexStart("CREATE UNIQUE INDEX ");

/** The name of the table that a statement makes, in lower case; empty for a name with unusual signs. */
QString tableName(const QString &statement)
{
    static const Pattern pattern(QStringLiteral("^CREATE TABLE\\s+[\"'`\\[]?(\\w+)"));
    return pattern.match(statement).captured(1).toLower();
}

/** The tables of the program, each with the column that is its key and its number of row, if it has one. */
const QHash<QString, QString> &programTables()
{
    static const QHash<QString, QString> tables = [] {
        static const Pattern key(QStringLiteral("(\\w+) INTEGER PRIMARY KEY"));
        QHash<QString, QString> found;
        for (const QString &statement : Schema::creationStatements()) {
            if (!tableName(statement).isEmpty())
                found.insert(tableName(statement), key.match(statement).captured(1));
        }
        return found;
    }();
    return tables;
}

/** An index over plain columns, of all rows. */
bool isPlainIndex(const QString &statement)
{
    static const Pattern pattern(
        QStringLiteral("^CREATE (UNIQUE )?INDEX [^(]*\\([\\w\\s,\"`\\[\\]]*\\)\\s*$"));
    return pattern.match(statement).hasMatch();
}

/**
 * Whether a condition or a default of a table may take its time: conditions of the program compare columns
 * with numbers and ask for a length.
 */
bool holdsCostlyExpression(const QString &statement)
{
    static const Pattern expressions(QStringLiteral("\\b(CHECK\\b|DEFAULT\\s*\\()"),
                                     Pattern::CaseInsensitiveOption);
    if (!expressions.match(statement).hasMatch())
        return false;
    static const Pattern costly(
        QStringLiteral("\\b(LIKE|GLOB|REGEXP|MATCH|SELECT)\\b|--|/\\*|['\"`\\]]\\s*\\("),
        Pattern::CaseInsensitiveOption);
    const QString rest = statement.mid(statement.indexOf(QLatin1Char('(')) + 1);
    if (costly.match(rest).hasMatch())
        return true;
    static const Pattern call(QStringLiteral("(\\w+)\\s*\\(\\s*(\\w+\\s*\\))?"));
    static const Pattern size(QStringLiteral("^\\d{1,5}\\s*\\)$"));
    static const QSet<QString> harmless{
        QStringLiteral("check"), QStringLiteral("default"), QStringLiteral("key"), QStringLiteral("unique"),
        QStringLiteral("and"),   QStringLiteral("or"),      QStringLiteral("not"), QStringLiteral("in")};
    for (auto found = call.globalMatch(rest); found.hasNext();) {
        const QRegularExpressionMatch match = found.next();
        const bool isLength = match.captured(1).toLower() == QLatin1String("length");
        const bool isType = size.match(match.captured(2)).hasMatch();
        if (!isLength && !isType && !harmless.contains(match.captured(1).toLower()))
            return true;
    }
    return false;
}

bool isForeign(const QString &statement)
{
    if (statement.startsWith(indexStart) || statement.startsWith(uniqueIndexStart))
        return !isPlainIndex(statement);
    if (!statement.startsWith(tableStart))
        return true;
    return programTables().contains(tableName(statement)) && holdsCostlyExpression(statement);
}

/** Computed columns, and keys that SQLite does not number by itself. */
bool hasForeignColumns(const QSqlDatabase &database, const QString &table, const QString &key)
{
    QSqlQuery list(database);
    list.setForwardOnly(true);
    if (list.exec(QStringLiteral("PRAGMA table_list('%1')").arg(table)) && list.next() &&
        list.value(QStringLiteral("wr")).toInt() != 0 && !key.isEmpty())
        return true;
    QSqlQuery columns(database);
    columns.setForwardOnly(true);
    columns.exec(QStringLiteral("PRAGMA table_xinfo('%1')").arg(table));
    while (columns.next()) {
        if (columns.value(QStringLiteral("hidden")).toInt() != 0)
            return true;
        const bool isKey =
            columns.value(QStringLiteral("pk")).toInt() == 1 &&
            columns.value(QStringLiteral("type")).toString().toUpper() == QLatin1String("INTEGER");
        if (columns.value(QStringLiteral("name")).toString() == key && !isKey)
            return true;
    }
    return false;
}
} // namespace

bool SchemaCheck::holdsForeignParts(const QSqlDatabase &database)
{
    QSqlQuery query(database);
    query.setForwardOnly(true);
    query.exec(QStringLiteral("SELECT sql FROM sqlite_master WHERE sql IS NOT NULL"));
    while (query.next()) {
        if (isForeign(query.value(0).toString()))
            return true;
    }
    const QHash<QString, QString> &tables = programTables();
    for (auto table = tables.cbegin(); table != tables.cend(); ++table) {
        if (hasForeignColumns(database, table.key(), table.value()))
            return true;
    }
    return false;
}
