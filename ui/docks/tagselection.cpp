#include "ui/docks/tagselection.h"

#include "models/tags/tagroles.h"
#include "ui/widgets/tableview.h"

#include <QItemSelection>
#include <QScrollBar>
#include <QSet>

#include <algorithm>

QVector<int> TagSelection::rows() const
{
    QVector<int> rows;
    if (!m_table->selectionModel())
        return rows;
    // The toolkit's own list asks every range about every row.
    const QItemSelection selection = m_table->selectionModel()->selection();
    for (const QItemSelectionRange &range : selection) {
        for (int row = range.top(); range.isValid() && row <= range.bottom(); ++row)
            rows.append(row);
    }
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    return rows;
}

QVector<qint64> TagSelection::tagIds() const
{
    QVector<qint64> tagIds;
    const QVector<int> selected = rows();
    for (const int row : selected) {
        const qint64 tagId = tagAt(row);
        if (tagId > 0)
            tagIds.append(tagId);
    }
    return tagIds;
}

qint64 TagSelection::tagAt(int row) const
{
    return m_table->model()->index(row, 0).data(TagRoles::TagId).toLongLong();
}

int TagSelection::rowOf(qint64 tagId) const
{
    const int count = m_table->model() && tagId > 0 ? m_table->model()->rowCount() : 0;
    for (int row = 0; row < count; ++row) {
        if (tagAt(row) == tagId)
            return row;
    }
    return -1;
}

void TagSelection::remember()
{
    // Rows mean nothing after a reload, ids do.
    m_rememberedTags = tagIds();
    m_rememberedCurrent = m_table->currentIndex().data(TagRoles::TagId).toLongLong();
    m_rememberedScroll = m_table->verticalScrollBar()->value();
}

void TagSelection::bringBack()
{
    QItemSelectionModel *selectionModel = m_table->selectionModel();
    if (!selectionModel)
        return;
    const QAbstractItemModel *model = m_table->model();
    const QSet<qint64> tags(m_rememberedTags.cbegin(), m_rememberedTags.cend());
    QItemSelection selection;
    const int count = tags.isEmpty() ? 0 : model->rowCount();
    for (int row = 0; row < count; ++row) {
        // One range for tags that follow each other: to select a hundred thousand rows one by one takes
        // minutes.
        const int first = row;
        while (row < count && tags.contains(tagAt(row)))
            ++row;
        if (row > first)
            selection.select(model->index(first, 0), model->index(row - 1, 0));
    }
    const QModelIndex current = model->index(rowOf(m_rememberedCurrent), 0);
    // The current row by itself: a call that selects it, too, would replace the selection.
    selectionModel->setCurrentIndex(current, QItemSelectionModel::NoUpdate);
    selectionModel->select(selection, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    m_table->verticalScrollBar()->setValue(m_rememberedScroll);
}

void TagSelection::show(qint64 tagId)
{
    const int row = rowOf(tagId);
    if (row < 0)
        return;
    const QModelIndex index = m_table->model()->index(row, 0);
    m_table->selectionModel()->setCurrentIndex(index, QItemSelectionModel::NoUpdate);
    m_table->scrollTo(index);
}
