#include "ui/widgets/countdelegate.h"

#include "ui/widgets/rowcount.h"

CountDelegate::CountDelegate(int nameColumn, int countRole, QObject *parent)
    : Delegate(parent), m_nameColumn(nameColumn), m_countRole(countRole)
{
}

QString CountDelegate::countOf(const QModelIndex &index) const
{
    return index.column() == m_nameColumn ? index.data(m_countRole).toString() : QString();
}

void CountDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                          const QModelIndex &index) const
{
    Delegate::paint(painter, option, index);
    const QString count = countOf(index);
    if (count.isEmpty())
        return;
    QStyleOptionViewItem named = option;
    Delegate::initStyleOption(&named, index);
    if (RowCount::textWidth(named, count) >= 0)
        RowCount::paint(painter, named, named.rect, count);
}

QSize CountDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    const QString count = countOf(index);
    const QSize size = Delegate::sizeHint(option, index);
    return count.isEmpty() ? size : size + QSize(RowCount::width(option, count), 0);
}

void CountDelegate::initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const
{
    Delegate::initStyleOption(option, index);
    const QString count = countOf(index);
    const int width = count.isEmpty() ? -1 : RowCount::textWidth(*option, count);
    if (width >= 0)
        option->text = option->fontMetrics.elidedText(option->text, option->textElideMode, width);
}
