#pragma once

#include "models/sortranks.h"

#include <QSortFilterProxyModel>
#include <QString>
#include <QStringMatcher>

#include <vector>

class File;
class FileFilterModel;

/**
 * The model that views show: of the files of a FileFilterModel those that the search text is found in, in the
 * order of a column. Until sort() is called with a column, and after sort(-1), files stand in the order of
 * their arrival and nothing is compared. GUI thread.
 */
class Sorter : public QSortFilterProxyModel
{
    Q_OBJECT

public:
    explicit Sorter(QObject *parent = nullptr);

    /** Takes a FileFilterModel that has its source. */
    void setSourceModel(QAbstractItemModel *sourceModel) override;
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;

    const QString &filterText() const { return m_filterText; }
    /** Looked for in name, description and id code, in this order, without regard to case. */
    void setFilterText(const QString &text);
    /** The same, but the rows are looked at only with the next change of the source, which has to follow. */
    void prepareFilterText(const QString &text);

    /** Null outside the rows. */
    const File *fileAt(int row) const;

public slots:
    /** Tags have other names: shows and, if they are sorted by, sorts them anew. */
    void refreshTagNames();

protected:
    bool filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const override;
    bool lessThan(const QModelIndex &left, const QModelIndex &right) const override;

private:
    bool isFoundIn(const QString &text) const;
    bool isMatch(const File &file) const;
    void openPass();
    void closePass(int column) const;
    void forgetRecords(int firstRow, int lastRow);

    FileFilterModel *m_filter = nullptr;
    QString m_filterText;
    QStringMatcher m_matcher;
    // A pass lasts from the loss of the row mapping to the first comparison. Meanwhile the rows that pass the
    // text are noted, as those, if they are many, are ranked before they are compared.
    mutable bool m_isPassOpen = false;
    mutable std::vector<int> m_passRows;
    mutable SortRanks m_ranks;
};
