#include "fileops/exchange/idtable.h"

#include "db/sql/sqltext.h"
#include "fileops/exchange/quietstatements.h"

namespace {
constexpr int idsAtOnce = 10000;
}

bool IdTable::create()
{
    return drop() &&
           m_statements.run(
               QStringLiteral(
                   "CREATE TEMPORARY TABLE %1 (place INTEGER PRIMARY KEY, id INTEGER NOT NULL UNIQUE);")
                   .arg(m_name));
}

bool IdTable::add(const QVector<qint64> &ids)
{
    const QString insert =
        QStringLiteral("INSERT OR IGNORE INTO temp.%1 (id) SELECT value FROM json_each(?);").arg(m_name);
    // As one value of a prepared statement: a list of ids in its text would be parsed anew each time.
    for (int first = 0; first < ids.size(); first += idsAtOnce) {
        const QString list = SqlText::idList(ids.mid(first, idsAtOnce));
        if (!m_statements.run(insert, {QString(QLatin1Char('[') + list + QLatin1Char(']'))}))
            return false;
    }
    return true;
}

bool IdTable::drop()
{
    return m_statements.run(QStringLiteral("DROP TABLE IF EXISTS temp.%1;").arg(m_name));
}
