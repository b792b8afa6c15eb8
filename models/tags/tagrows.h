#pragma once

#include "core/records/recordtypes.h"
#include "db/sql/tabledata.h"

#include <QHash>
#include <QObject>
#include <QVector>

/**
 * The rows of the table of tags: a TagItem for each raw row, in the order of loading, kept in step with it.
 * Owned by the model of the table, as the items are by this, which tells its views what comes and goes.
 */
class TagRows : public QObject
{
    Q_OBJECT

public:
    explicit TagRows(QObject *parent) : QObject(parent) {}

    int count() const { return m_items.size(); }
    /** Null outside the rows. */
    TagItem *at(int row) const { return m_items.value(row); }
    /** -1 for an unknown tag. */
    int rowOf(qint64 tagId) const;
    /** Null for an unknown tag. */
    TagItem *item(qint64 tagId) const { return at(rowOf(tagId)); }

    static qint64 idOf(const TableRowData &row);
    /** Brings known tags up to date and gives the raw rows of the others, each tag once. */
    TableData update(const TableData &rows);
    /** Makes the item of an unknown tag behind the others. The raw row is listened to as long as it lives. */
    TagItem *append(TableRowData *row, const QVector<qint64> &groups);
    void remove(int row);

signals:
    /** A value that the item itself does not tell of. */
    void changed(qint64 tagId);

private:
    void follow(TableRowData *row, TagItem *item);
    void setField(TagItem *item, const QString &column, const QVariant &value);

    TagVector m_items;
    mutable QHash<qint64, int> m_rowsById; // empty when it has to be made anew
};
