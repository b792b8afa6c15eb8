#include "models/tagsfilterproxy.h"

#include <QLocale>
#include <QRegExp>

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
    QRegExp filter(text, Qt::CaseInsensitive, QRegExp::Wildcard);
    // A bracket that is not closed yet would match nothing.
    if (!filter.isValid())
        filter.setPatternSyntax(QRegExp::FixedString);
    setFilterRegExp(filter);
}

bool TagsFilterProxy::lessThan(const QModelIndex &left, const QModelIndex &right) const
{
    const QVariant first = left.data(sortRole());
    const QVariant second = right.data(sortRole());
    if (first.userType() == QMetaType::QString && second.userType() == QMetaType::QString)
        return m_collator.compare(first.toString(), second.toString()) < 0;
    return QSortFilterProxyModel::lessThan(left, right);
}
