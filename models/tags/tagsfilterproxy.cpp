#include "models/tags/tagsfilterproxy.h"

#include <QLocale>

namespace {
// Longer texts are compared as they are.
constexpr int mostCharactersOfKey = 256;
// Names that are gone leave theirs behind.
constexpr size_t mostKeys = 100000;

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
    if (text == m_filterText)
        return;
    m_filterText = text;
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
    if (first.userType() != QMetaType::QString || second.userType() != QMetaType::QString)
        return QSortFilterProxyModel::lessThan(left, right);
    const QString firstText = first.toString();
    const QString secondText = second.toString();
    // Keys are several times as long as their texts.
    if (firstText.size() > mostCharactersOfKey || secondText.size() > mostCharactersOfKey)
        return m_collator.compare(firstText, secondText) < 0;
    if (m_keys.size() > mostKeys)
        m_keys.clear();
    // Collating is dear: a name is turned into its key once, and keys are compared by their bytes.
    return keyOf(firstText) < keyOf(secondText);
}

const QCollatorSortKey &TagsFilterProxy::keyOf(const QString &text) const
{
    const auto known = m_keys.find(text);
    return known != m_keys.end() ? known->second
                                 : m_keys.emplace(text, m_collator.sortKey(text)).first->second;
}
