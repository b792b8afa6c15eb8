#pragma once

#include "ui/widgets/namesearch.h"
#include "ui/widgets/selectedrows.h"

#include <QListView>
#include <QPersistentModelIndex>

/** The files as thumbnails. Differs from its base in that a drag leaves the selection as it is. */
class ListView : public QListView
{
    Q_OBJECT

public:
    explicit ListView(QWidget *parent = nullptr);

    /** In pixels; what stands in the middle stays there. */
    void setThumbnailSide(int side);
    /** Shown while there are no rows. */
    void setEmptyText(const QString &text);
    /** The names that typed letters are looked for in. */
    void setNames(const NameSearch::NameAt &nameAt) { m_nameSearch.setNames(nameAt); }
    /** What a drag of the selection carries; without it the model is asked with a list of rows. */
    void setDragData(const DragDataOf &dragDataOf) { m_dragDataOf = dragDataOf; }
    bool isEditing() const { return state() == EditingState; }
    void keyboardSearch(const QString &typed) override;
    /** Any column of the row will do. One that has no place yet is scrolled to as soon as it has. */
    void scrollTo(const QModelIndex &index, ScrollHint hint = EnsureVisible) override;
    void doItemsLayout() override;

protected:
    void timerEvent(QTimerEvent *event) override;
    void startDrag(Qt::DropActions supportedActions) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void changeEvent(QEvent *event) override;
    QRegion visualRegionForSelection(const QItemSelection &selection) const override;

protected slots:
    void closeEditor(QWidget *editor, QAbstractItemDelegate::EndEditHint hint) override;

private:
    void resizeThumbnails(int side);
    void updateGrid();

    NameSearch m_nameSearch;
    DragDataOf m_dragDataOf;
    QString m_emptyText;
    QPersistentModelIndex m_awaited; ///< to be scrolled to
};
