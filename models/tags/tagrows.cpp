#include "models/tags/tagrows.h"

#include <QSet>

namespace {
const QString idColumn = QStringLiteral("tag_id");
const QString nameColumn = QStringLiteral("tag_name");
const QString descriptionColumn = QStringLiteral("tag_description");
const QString dateColumn = QStringLiteral("creation_date");
} // namespace

int TagRows::rowOf(qint64 tagId) const
{
    // Made anew after rows came or went, on the first question, and not for each of them.
    if (m_rowsById.size() != m_items.size()) {
        m_rowsById.clear();
        m_rowsById.reserve(m_items.size());
        for (int row = 0; row < m_items.size(); ++row)
            m_rowsById.insert(m_items.at(row)->id(), row);
    }
    return m_rowsById.value(tagId, -1);
}

qint64 TagRows::idOf(const TableRowData &row)
{
    return row.value(idColumn).toLongLong();
}

TableData TagRows::update(const TableData &rows)
{
    TableData unknown;
    QSet<qint64> seen;
    for (TableRowData *row : rows) {
        const qint64 tagId = idOf(*row);
        TagItem *known = item(tagId);
        if (!known && !seen.contains(tagId)) {
            seen.insert(tagId);
            unknown.append(row);
            continue;
        }
        qWarning("TagsTableModel::addNewTag - adds duplicate where Id = %d", static_cast<int>(tagId));
        if (!known)
            continue;
        for (const QString &column : row->columns())
            setField(known, column, row->value(column));
        follow(row, known);
    }
    return unknown;
}

TagItem *TagRows::append(TableRowData *row, const QVector<qint64> &groups)
{
    auto *item =
        new TagItem(idOf(*row), row->value(nameColumn).toString(), row->value(descriptionColumn).toString(),
                    row->value(dateColumn).toInt(), 0, groups, this);
    follow(row, item);
    m_items.append(item);
    return item;
}

void TagRows::remove(int row)
{
    TagItem *item = m_items.at(row);
    // Every row behind this one has moved up.
    m_rowsById.clear();
    m_items.removeAt(row);
    emit m_items.itemRemoved(row);
    // Later, as it may be this very item whose signal led here; nobody is to hear of it until then.
    item->disconnect();
    item->deleteLater();
}

void TagRows::follow(TableRowData *row, TagItem *item)
{
    connect(row, &TableRowData::dataUpdated, item,
            [this, item](const QString &column, const QVariant &value) { setField(item, column, value); });
}

void TagRows::setField(TagItem *item, const QString &column, const QVariant &value)
{
    if (column == nameColumn) {
        item->setName(value.toString());
    } else if (column == descriptionColumn) {
        item->setDescription(value.toString());
    } else if (column == dateColumn && item->creationDate() != value.toInt()) {
        item->setCreationDate(value.toInt());
        emit changed(item->id());
    }
}
