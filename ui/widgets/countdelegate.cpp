#include "ui/widgets/countdelegate.h"

#include "ui/widgets/rowcount.h"

namespace {

// A shorter rest of a name says less than its number.
constexpr int leastLetters = 9;

/** What a name that is cut has beside its number; below 0 where the name alone is shown. */
int widthOfName(const QStyleOptionViewItem &option, const FileCount &count)
{
    if (!count.isKnown())
        return -1;
    const int width = RowCount::textWidth(option, option.rect, count);
    const int whole = option.fontMetrics.horizontalAdvance(option.text);
    return width < qMin(whole, leastLetters * option.fontMetrics.averageCharWidth()) ? -1 : width;
}

} // namespace

CountDelegate::CountDelegate(int nameColumn, int countRole, QObject *parent)
    : Delegate(parent), m_nameColumn(nameColumn), m_countRole(countRole)
{
}

FileCount CountDelegate::countOf(const QModelIndex &index) const
{
    return index.column() == m_nameColumn ? index.data(m_countRole).value<FileCount>() : FileCount();
}

void CountDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                          const QModelIndex &index) const
{
    Delegate::paint(painter, option, index);
    QStyleOptionViewItem named = option;
    Delegate::initStyleOption(&named, index);
    const FileCount count = countOf(index);
    if (widthOfName(named, count) >= 0)
        RowCount::paint(painter, named, named.rect, count);
}

QSize CountDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    const FileCount count = countOf(index);
    const QSize size = Delegate::sizeHint(option, index);
    return count.isKnown() ? size + QSize(RowCount::width(option, count), 0) : size;
}

void CountDelegate::initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const
{
    Delegate::initStyleOption(option, index);
    const int width = widthOfName(*option, countOf(index));
    if (width >= 0)
        option->text = option->fontMetrics.elidedText(option->text, option->textElideMode, width);
}
