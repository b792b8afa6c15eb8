#include "ui/dialogs/namematchdelegate.h"

#include "ui/dialogs/namematchmodel.h"

#include <QPainter>
#include <QTableView>

namespace {

constexpr int indentation = 20;

bool isName(const QModelIndex &index)
{
    return static_cast<const NameMatchModel *>(index.model())->isName(index.row());
}

QStyleOptionViewItem movedIn(const QStyleOptionViewItem &option, const QModelIndex &index)
{
    QStyleOptionViewItem moved = option;
    if (index.column() == NameMatchModel::FileColumn && !isName(index))
        moved.rect.setLeft(option.rect.left() + indentation);
    return moved;
}

} // namespace

void NameMatchDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                              const QModelIndex &index) const
{
    if (isName(index)) {
        paintName(painter, option, index);
        return;
    }
    const QStyle *style = option.widget->style();
    // The selection begins where the row does.
    style->drawPrimitive(QStyle::PE_PanelItemViewItem, &option, painter, option.widget);
    QStyledItemDelegate::paint(painter, movedIn(option, index), index);
}

/** Each cell paints its part of the row, as it may be painted alone. */
void NameMatchDelegate::paintName(QPainter *painter, const QStyleOptionViewItem &option,
                                  const QModelIndex &index) const
{
    const auto *view = static_cast<const QTableView *>(option.widget);
    const QModelIndex first = index.siblingAtColumn(NameMatchModel::FileColumn);
    QStyleOptionViewItem row = option;
    row.rect = view->visualRect(first).united(
        view->visualRect(index.siblingAtColumn(NameMatchModel::ColumnCount - 1)));
    row.font.setBold(true);
    row.state.setFlag(QStyle::State_HasFocus, false);
    painter->save();
    painter->setClipRect(option.rect, Qt::IntersectClip);
    QStyledItemDelegate::paint(painter, row, first);
    painter->restore();
}

QSize NameMatchDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    const int margin = option.rect.left() - movedIn(option, index).rect.left();
    return QStyledItemDelegate::sizeHint(option, index) + QSize(qAbs(margin), 0);
}

bool NameMatchDelegate::editorEvent(QEvent *event, QAbstractItemModel *model,
                                    const QStyleOptionViewItem &option, const QModelIndex &index)
{
    return QStyledItemDelegate::editorEvent(event, model, movedIn(option, index), index);
}
