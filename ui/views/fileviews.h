#pragma once

#include <QPointer>
#include <QStackedWidget>

#include <memory>

class FileTableHeader;
class ColumnMenu;
class ListView;
class QAbstractItemView;
class QItemSelectionModel;
class QMenu;
class QModelIndex;
class Sorter;
class TableView;

/**
 * The two views of the files, as thumbnails and as a table, of which one is shown. They share one model and
 * one selection. Belongs to the MainFilesView; GUI thread.
 */
class FileViews : public QStackedWidget
{
    Q_OBJECT

public:
    explicit FileViews(QWidget *parent);
    ~FileViews() override;

    void showThumbnails(bool on);
    /** In pixels. */
    void setThumbnailSide(int side);
    QAbstractItemView *current() const;
    QList<QAbstractItemView *> all() const;

    /** Borrowed; null, before it goes, keeps the table's columns for the next one. */
    void setSorter(Sorter *sorter);
    bool hasSorter() const { return !m_sorter.isNull(); }
    /** Another one with each sorter, null without. */
    QItemSelectionModel *selection() const;

    /** By which both views are sorted; -1 for the order in which files were added. */
    int sortColumn() const;
    Qt::SortOrder sortOrder() const;
    /** Shows it in the table's header, too. */
    void sortBy(int column, Qt::SortOrder order);
    /** The columns of the table: which of them are shown. */
    QMenu *columnMenu() const;

    void setEditable(bool isEditable);
    bool isEditing() const;
    /** Shown while there are no files. */
    void setEmptyText(const QString &text);
    void scrollToTop();

signals:
    void sortingChanged(int column, Qt::SortOrder order);
    void contextMenuRequested(QPoint pos);
    void doubleClicked(QModelIndex index);
    /** So many files are about to be painted. */
    void aboutToShow(int count);

private:
    void setUpTable();
    void setUpView(QAbstractItemView *view);
    QString searchHit(const QModelIndex &index) const;
    void attach();
    void detach();

    ListView *m_list;
    TableView *m_table;
    std::unique_ptr<FileTableHeader> m_header;
    ColumnMenu *m_columnMenu;
    QPointer<Sorter> m_sorter;
};
