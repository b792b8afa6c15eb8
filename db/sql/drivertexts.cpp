#include "db/sql/drivertexts.h"

#include "db/sql/readbound.h"

#include <QSqlDriver>
#include <QSqlQuery>
#include <QSqlResult>

#include <libpq-fe.h>

#include <cstring>

namespace {
const QChar mark(QChar::ByteOrderMark);
constexpr char resultType[] = "PGresult*";

bool beginsWithMark(const QSqlQuery &query, int column)
{
    const QVariant handle = query.result()->handle();
    if (!handle.isValid() || std::strcmp(handle.typeName(), resultType) != 0)
        return false;
    const PGresult *result = *static_cast<PGresult *const *>(handle.constData());
    // Read forward only, a result holds one row at a time.
    const char *bytes = result ? PQgetvalue(result, query.isForwardOnly() ? 0 : query.at(), column) : nullptr;
    return bytes && std::strncmp(bytes, "\xEF\xBB\xBF", 3) == 0;
}

bool isOn(const QSqlQuery &query, QSqlDriver::DbmsType type)
{
    return query.driver() && query.driver()->dbmsType() == type;
}
} // namespace

QVariant DriverTexts::read(const QSqlQuery &query, int column)
{
    QVariant value = query.value(column);
    ReadBound::count(value);
    if (value.type() == QVariant::String && isOn(query, QSqlDriver::PostgreSQL) &&
        beginsWithMark(query, column))
        return QString(mark + value.toString());
    return value;
}

QVariant DriverTexts::toBind(const QSqlQuery &query, const QVariant &value)
{
    if (value.type() != QVariant::String || !isOn(query, QSqlDriver::SQLite))
        return value;
    const QString text = value.toString();
    // Of two marks SQLite drops one. The swapped one would have it read the letters the wrong way round.
    const bool isMarked = text.startsWith(mark) || text.startsWith(QChar(QChar::ByteOrderSwapped));
    return isMarked ? QVariant(QString(mark + text)) : value;
}
