#pragma once

#include "db/sql/tabledata.h"

#include <QHash>
#include <QString>
#include <QVector>

/**
 * The rows of all tags, kept raw and owned: what shows a tag listens to TableRowData::dataUpdated of its row.
 * Lives in the manager, GUI thread. Names are looked up by hash, as each displayed tag asks for its own.
 */
class TagCache
{
public:
    TagCache() = default;
    ~TagCache();
    TagCache(const TagCache &) = delete;
    TagCache &operator=(const TagCache &) = delete;

    /** In the order of loading. */
    const TableData &rows() const { return m_rows; }
    /** Null for an unknown tag. */
    TableRowData *row(qint64 tagId) const { return m_rowsById.value(tagId, nullptr); }
    /** Empty for an unknown tag. */
    QString name(qint64 tagId) const;
    bool hasName(const QString &name) const { return m_nameCounts.contains(name); }

    /** Takes the rows and gives the ones held before, whose owner the caller becomes. */
    TableData replaceAll(const TableData &rows);

    struct Merge
    {
        TableData added;                 ///< rows of tags that were not known, owned by the cache
        QHash<qint64, QString> newNames; ///< known tags that have another name now
    };
    /** Takes in rows and owns them: a known tag keeps its row, which gets the new values. */
    Merge merge(const TableData &rows);

    /** Takes the rows of tags out; the caller becomes their owner. */
    TableData take(const QVector<qint64> &tagIds);

private:
    void enter(TableRowData *row);
    void countName(const QString &name);
    void discountName(const QString &name);

    TableData m_rows;
    QHash<qint64, TableRowData *> m_rowsById;
    QHash<QString, int> m_nameCounts; // two tags may have one name
};
