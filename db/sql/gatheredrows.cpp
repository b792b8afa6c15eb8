#include "db/sql/gatheredrows.h"

#include "db/sql/sqltext.h"

#include <algorithm>

namespace {
QString literal(const QVariant &value)
{
    if (value.isNull())
        return QStringLiteral("NULL");
    if (value.type() == QVariant::ByteArray)
        return QLatin1String("'\\x") + QString::fromLatin1(value.toByteArray().toHex()) + QLatin1Char('\'');
    if (value.type() == QVariant::String)
        return SqlText::quoted(value.toString());
    return value.toString();
}
} // namespace

void GatheredRows::add(const QString &into, int columns, const QVariantList &values)
{
    auto table = std::find_if(m_tables.begin(), m_tables.end(),
                              [&into](const Table &known) { return known.into == into; });
    if (table == m_tables.end())
        table = m_tables.insert(m_tables.end(), {into, {}});
    for (int i = 0; i < values.size(); ++i) {
        const bool isFirst = i % columns == 0;
        if (isFirst && !table->rows.isEmpty())
            table->rows += QLatin1Char(',');
        table->rows += QLatin1Char(isFirst ? '(' : ',');
        table->rows += literal(values.at(i));
        if ((i + 1) % columns == 0)
            table->rows += QLatin1Char(')');
    }
}

QStringList GatheredRows::take()
{
    QStringList statements;
    for (const Table &table : qAsConst(m_tables))
        statements.append(table.into + QLatin1String(" VALUES ") + table.rows + QLatin1Char(';'));
    m_tables.clear();
    return statements;
}
