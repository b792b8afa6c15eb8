#pragma once

#include "models/base/rowproxymodel.h"
#include "models/contents/sortedrows.h"

#include <QString>
#include <QStringMatcher>
#include <QVector>

#include <functional>
#include <string>
#include <vector>

class File;
class FileFilterModel;
class QItemSelection;

/**
 * The model that views show: of the files of a FileFilterModel those that the search text is found in, in the
 * order of a column. Until sort() is called with a column, and after sort(-1), files stand in the order of
 * their arrival and nothing is compared.
 *
 * The mapping is our own, as in the filter below: the base class compares a million rows anew whenever a few
 * of them come. GUI thread.
 */
class Sorter : public RowProxyModel
{
    Q_OBJECT

public:
    explicit Sorter(QObject *parent = nullptr);

    /** Takes a FileFilterModel that has its source. */
    void setSourceModel(QAbstractItemModel *sourceModel) override;
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;
    /** -1 while files stand in the order of their arrival. */
    int sortColumn() const { return m_rows.column(); }
    Qt::SortOrder sortOrder() const { return m_rows.sortOrder(); }

    const QString &filterText() const { return m_filterText; }
    /**
     * Looked for in name, description and id code, in this order, without regard to case. The rows are looked
     * at only with the next change of the source, which has to follow.
     */
    void prepareFilterText(const QString &text);

    /** Null outside the rows. */
    const File *fileAt(int row) const;
    /** Id and kind of a row that there is, without the record: a look at a million records is dear. */
    qint64 idAt(int row) const;
    int kindAt(int row) const;
    /** The bytes of the files in these rows. */
    qint64 sizeOf(int firstRow, int lastRow) const;
    /** Takes of some tags away those that the file in a row has not. */
    void keepTagsOf(int row, QVector<qint64> &tagIds) const;
    /** Whether a file in these rows is of a kind; at once for all of them, and when no shown file is. */
    bool hasKind(const std::function<bool(int kind)> &isWanted, int firstRow, int lastRow) const;
    /** Invalid for a file that is not shown. */
    QModelIndex indexOf(qint64 fileId) const;

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    QModelIndex mapToSource(const QModelIndex &proxyIndex) const override;
    QModelIndex mapFromSource(const QModelIndex &sourceIndex) const override;
    QMimeData *mimeData(const QModelIndexList &indexes) const override;
    /** The same for the rows of ranges: a list of a million indexes takes longer than all the rest. */
    QMimeData *dragData(const QItemSelection &ranges) const;

public slots:
    /** All tags may have other names: shows and, if they are sorted by, sorts them anew. */
    void refreshTagNames();
    /** The same for some tags: files without them keep their order. */
    void renameTags(const QVector<qint64> &tagIds);

protected:
    bool filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const override;
    bool lessThan(const QModelIndex &left, const QModelIndex &right) const override;

private:
    void connectSource();
    void sourceDataChanged(const QModelIndex &topLeft, const QModelIndex &bottomRight,
                           const QVector<int> &roles);
    void sourceRowsAboutToBeInserted(const QModelIndex &parent, int first, int last);
    void sourceRowsInserted(const QModelIndex &parent, int first, int last);
    void sourceRowsAboutToBeRemoved(const QModelIndex &parent, int first, int last);
    void sourceRowsRemoved(const QModelIndex &parent, int first, int last);
    void sourceLayoutChanged();
    void sourceReset();

    bool isFoundIn(const QString &text) const;
    bool isFoundInIdCode(const File &file) const;
    bool isMatch(const File &file) const;
    std::vector<int> matchingRows() const;
    void arrange();
    void showTagNames();
    void rearrange();
    void placeAnew(const QVector<int> &contentsRows);
    void insertRow(int sourceRow);
    bool isInPlace(int sourceRow) const;
    bool areChangedRowsInPlace() const;

    FileFilterModel *m_filter = nullptr;
    QString m_filterText;
    QStringMatcher m_matcher;
    std::string m_foldedText; ///< as SearchTexts has them; empty when each row is to be looked at
    SortedRows m_rows;
    QVector<int> m_changedRecords; // rows of the ContentsModel that may have to move
};
