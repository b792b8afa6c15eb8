#include "models/tags/tagsfilterproxy.h"

#include <QLocale>

namespace {
// The plain locale collates by bytes and knows no numbers.
QLocale collatingLocale()
{
    const QLocale locale = QCollator().locale();
    return locale.language() == QLocale::C ? QLocale(QLocale::English) : locale;
}
} // namespace

TagsFilterProxy::TagsFilterProxy(QObject *parent)
    : QSortFilterProxyModel(parent), m_collator(collatingLocale())
{
    setFilterKeyColumn(0);
    m_collator.setNumericMode(true);
    m_collator.setCaseSensitivity(Qt::CaseInsensitive);
}

void TagsFilterProxy::setNameFilter(const QString &text)
{
    m_filter = QRegExp(text, Qt::CaseInsensitive, QRegExp::Wildcard);
    // A bracket that is not closed yet would match nothing.
    if (!m_filter.isValid())
        m_filter.setPatternSyntax(QRegExp::FixedString);
    // Not by the base class's pattern, which takes rows out one by one.
    invalidate();
}

bool TagsFilterProxy::filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const
{
    if (m_filter.isEmpty())
        return true;
    const QModelIndex name = sourceModel()->index(sourceRow, 0, sourceParent);
    return m_filter.indexIn(name.data().toString()) >= 0;
}

bool TagsFilterProxy::lessThan(const QModelIndex &left, const QModelIndex &right) const
{
    const QVariant first = left.data(sortRole());
    const QVariant second = right.data(sortRole());
    if (first.userType() == QMetaType::QString && second.userType() == QMetaType::QString)
        return m_collator.compare(first.toString(), second.toString()) < 0;
    return QSortFilterProxyModel::lessThan(left, right);
}
