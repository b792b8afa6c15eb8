#include "db/caches/tagcache.h"

#include "db/sql/longtext.h"

#include <QSet>

#include <algorithm>

namespace {
const QString idColumn = QStringLiteral("tag_id");
const QString nameColumn = QStringLiteral("tag_name");

qint64 idOf(const TableRowData &row)
{
    return row.value(idColumn).toLongLong();
}

QString nameOf(const TableRowData &row)
{
    return row.value(nameColumn).toString();
}

void cutLongTexts(TableRowData &row)
{
    for (int i = 0; i < row.columns().size(); ++i) {
        if (row.at(i).type() == QVariant::String && LongText::isTooLong(row.at(i).toString()))
            row.setAt(i, LongText::kept(row.at(i).toString()));
    }
}

void copyValues(const TableRowData &from, TableRowData &to)
{
    for (int i = 0; i < from.columns().size(); ++i) {
        // A row of an edit may hold only what was changed.
        if (from.at(i).isValid())
            to.setValue(from.columns().at(i), from.at(i));
    }
}
} // namespace

TagCache::~TagCache()
{
    qDeleteAll(m_rows);
}

QString TagCache::name(qint64 tagId) const
{
    const TableRowData *found = row(tagId);
    return found ? nameOf(*found) : QString();
}

TableData TagCache::replaceAll(const TableData &rows)
{
    const TableData old = m_rows;
    m_rows.clear();
    m_rowsById.clear();
    m_nameCounts.clear();
    m_rows.reserve(rows.size());
    m_rowsById.reserve(rows.size());
    for (TableRowData *row : rows) {
        cutLongTexts(*row);
        enter(row);
    }
    return old;
}

TagCache::Merge TagCache::merge(const TableData &rows)
{
    Merge result;
    for (TableRowData *row : rows) {
        cutLongTexts(*row);
        TableRowData *known = this->row(idOf(*row));
        if (!known) {
            enter(row);
            result.added.append(row);
            continue;
        }
        const QString oldName = nameOf(*known);
        const QString newName = nameOf(*row);
        if (oldName != newName) {
            discountName(oldName);
            countName(newName);
            result.newNames.insert(idOf(*row), newName);
        }
        copyValues(*row, *known);
        delete row;
    }
    return result;
}

TableData TagCache::take(const QVector<qint64> &tagIds)
{
    TableData taken;
    for (const qint64 tagId : tagIds) {
        // The caller frees the rows when everybody has been told.
        TableRowData *row = m_rowsById.take(tagId);
        if (!row)
            continue;
        discountName(nameOf(*row));
        taken.append(row);
    }
    const QSet<TableRowData *> gone(taken.cbegin(), taken.cend());
    const auto isGone = [&gone](TableRowData *row) { return gone.contains(row); };
    m_rows.erase(std::remove_if(m_rows.begin(), m_rows.end(), isGone), m_rows.end());
    return taken;
}

void TagCache::enter(TableRowData *row)
{
    m_rows.append(row);
    m_rowsById.insert(idOf(*row), row);
    countName(nameOf(*row));
}

void TagCache::countName(const QString &name)
{
    // Counted, as two tags may have one name.
    ++m_nameCounts[name];
}

void TagCache::discountName(const QString &name)
{
    const auto found = m_nameCounts.find(name);
    if (found != m_nameCounts.end() && --found.value() == 0)
        m_nameCounts.erase(found);
}
