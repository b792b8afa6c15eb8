#pragma once

#include <QCollator>
#include <QRegExp>
#include <QSortFilterProxyModel>
#include <QString>

#include <unordered_map>

/**
 * What the table of tags shows: the rows of a tab whose names match the filter, sorted as a person would:
 * numbers in names count as numbers, and case does not count. GUI thread.
 */
class TagsFilterProxy : public QSortFilterProxyModel
{
    Q_OBJECT

public:
    explicit TagsFilterProxy(QObject *parent = nullptr);

    /** Shows the names that hold the text, in any case; * and ? stand for anything, [ab] for one of these. */
    void setNameFilter(const QString &text);

protected:
    bool filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const override;
    bool lessThan(const QModelIndex &left, const QModelIndex &right) const override;

private:
    const QCollatorSortKey &keyOf(const QString &text) const;

    QString m_filterText;
    QRegExp m_filter;
    QCollator m_collator;
    // A sort compares each name a dozen times, and a collator is slow.
    mutable std::unordered_map<QString, QCollatorSortKey> m_keys;
};
