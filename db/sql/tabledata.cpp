#include "db/sql/tabledata.h"

#include <QMap>

TableRowData::TableRowData(QObject *parent) : QObject(parent) {}

TableRowData::TableRowData(const QStringList &columns) : m_columns(columns), m_values(columns.size()) {}

QVariant TableRowData::value(const QString &key, const QVariant &defaultValue) const
{
    const int index = indexOf(key);
    return index >= 0 && m_values.at(index).isValid() ? m_values.at(index) : defaultValue;
}

void TableRowData::setValue(const QString &key, const QVariant &value)
{
    const int index = indexOf(key);
    if (index < 0) {
        m_columns.append(key);
        m_values.append(value);
    } else if (m_values.at(index) == value && m_values.at(index).isNull() == value.isNull()) {
        return;
    } else {
        m_values[index] = value;
    }
    emit dataUpdated(key, value);
}

bool TableRowData::isEmpty() const
{
    for (const QVariant &value : m_values) {
        if (value.isValid())
            return false;
    }
    return true;
}

QVariantList TableRowData::values() const
{
    QMap<QString, QVariant> sorted;
    for (int i = 0; i < m_values.size(); ++i) {
        if (m_values.at(i).isValid())
            sorted.insert(m_columns.at(i), m_values.at(i));
    }
    return sorted.values();
}

void TableRowData::setValues(QVector<QVariant> values)
{
    m_values = std::move(values);
    m_values.resize(m_columns.size());
}

int TableRowData::indexOf(const QString &key) const
{
    return m_columns.lastIndexOf(key);
}

void freeRows(TableData &table)
{
    qDeleteAll(table);
    table.clear();
}
