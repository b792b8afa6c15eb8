#include "ui/widgets/treecountdelegate.h"

#include "app/settings/showntext.h"
#include "models/counts/filecount.h"
#include "ui/widgets/rowcount.h"

#include <QAbstractItemView>
#include <QHelpEvent>
#include <QToolTip>

namespace {

/** The row from edge to edge of the view. */
QRect rowOf(const QStyleOptionViewItem &option)
{
    const auto *view = qobject_cast<const QAbstractItemView *>(option.widget);
    if (!view)
        return option.rect;
    const QRect shown = view->viewport()->rect();
    return {shown.left(), option.rect.top(), shown.width(), option.rect.height()};
}

} // namespace

TreeCountDelegate::TreeCountDelegate(int countRole, QObject *parent)
    : QStyledItemDelegate(parent), m_countRole(countRole)
{
}

FileCount TreeCountDelegate::countOf(const QModelIndex &index) const
{
    return index.data(m_countRole).value<FileCount>();
}

bool TreeCountDelegate::fits(const QStyleOptionViewItem &option, const FileCount &count) const
{
    return RowCount::textWidth(option, rowOf(option), count) >=
           option.fontMetrics.horizontalAdvance(option.text);
}

void TreeCountDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                              const QModelIndex &index) const
{
    QStyledItemDelegate::paint(painter, option, index);
    const FileCount count = countOf(index);
    QStyleOptionViewItem named = option;
    initStyleOption(&named, index);
    if (count.isKnown() && fits(named, count))
        RowCount::paint(painter, named, rowOf(named), count);
}

bool TreeCountDelegate::helpEvent(QHelpEvent *event, QAbstractItemView *view,
                                  const QStyleOptionViewItem &option, const QModelIndex &index)
{
    const FileCount count = event->type() == QEvent::ToolTip ? countOf(index) : FileCount();
    QStyleOptionViewItem named = option;
    initStyleOption(&named, index);
    if (!count.isKnown() || count.isOutdated() || fits(named, count))
        return QStyledItemDelegate::helpEvent(event, view, option, index);
    QToolTip::showText(event->globalPos(), ShownText::toolTip(count.spoken(named.text)), view->viewport());
    return true;
}
