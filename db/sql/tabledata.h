#pragma once

#include <QObject>
#include <QStringList>
#include <QVariant>
#include <QVector>

/**
 * One row of a query result: values by column name. Rows of one result share one list of names, so that a row
 * costs its values only. A column whose value is invalid is one that the row does not have; a null of the
 * database is a valid, null value. Of two columns with one name the later wins.
 *
 * A row has no parent and belongs to whoever receives its table. It may be read in another thread than the
 * one that made it, by one thread at a time.
 */
class TableRowData : public QObject
{
    Q_OBJECT

public:
    explicit TableRowData(QObject *parent = nullptr);
    /** A row over these columns, without any value yet. */
    explicit TableRowData(const QStringList &columns);

    QVariant value(const QString &key, const QVariant &defaultValue = QVariant()) const;
    /** Sets a value by name, a new column included; dataUpdated tells when that changed the row. */
    void setValue(const QString &key, const QVariant &value);
    /** True when no column has a value. */
    bool isEmpty() const;
    /** The values in the order of their sorted column names. */
    QVariantList values() const;

    // Access by position for long loops; none of these emits a signal.
    const QStringList &columns() const { return m_columns; }
    const QVariant &at(int index) const { return m_values.at(index); }
    void setAt(int index, const QVariant &value) { m_values[index] = value; }
    void setAt(int index, QVariant &&value) { m_values[index] = std::move(value); }
    /** Makes every value invalid and keeps the columns. */
    void clearValues() { m_values.fill(QVariant()); }
    /** Takes the values of all columns at once, in column order. */
    void setValues(QVector<QVariant> values);
    /** For rows over the same columns. */
    void swapValues(TableRowData &other) { m_values.swap(other.m_values); }

signals:
    void dataUpdated(QString key, QVariant value);

private:
    int indexOf(const QString &key) const;

    QStringList m_columns;
    QVector<QVariant> m_values;
};

/** A query result. A copy copies the pointers: exactly one holder frees the rows. */
using TableData = QVector<TableRowData *>;
Q_DECLARE_METATYPE(TableData)

/** Deletes the rows and empties the table. */
void freeRows(TableData &table);
