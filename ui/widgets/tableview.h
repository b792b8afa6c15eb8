#pragma once

#include "ui/widgets/namesearch.h"
#include "ui/widgets/selectedrows.h"

#include <QItemSelection>
#include <QPersistentModelIndex>
#include <QTableView>

class QHelpEvent;

/**
 * A table of files or tags, selected by whole rows. Differs from its base in that a drag leaves the selection
 * as it is, in that others may handle keys first, and in that files dragged over it mark their target.
 */
class TableView : public QTableView
{
    Q_OBJECT

public:
    explicit TableView(QWidget *parent = nullptr);

    /** Shown while there are no rows. */
    void setEmptyText(const QString &text);
    /** The names that typed letters are looked for in; without them they are looked for in what is shown. */
    void setNames(const NameSearch::NameAt &nameAt) { m_nameSearch.setNames(nameAt); }
    /** What a drag of the selection carries; without it the model is asked with a list of rows. */
    void setDragData(const DragDataOf &dragDataOf) { m_dragDataOf = dragDataOf; }
    bool isEditing() const { return state() == EditingState; }
    /** The header gets an empty selection of its own. */
    void setSelectionModel(QItemSelectionModel *selectionModel) override;
    void keyboardSearch(const QString &typed) override;
    void scrollTo(const QModelIndex &index, ScrollHint hint = EnsureVisible) override;

signals:
    /** Comes before the table's own handling, which accepting the event suppresses. */
    void keyPressed(QKeyEvent *event);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    bool focusNextPrevChild(bool next) override;
    void startDrag(Qt::DropActions supportedActions) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dragLeaveEvent(QDragLeaveEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    bool viewportEvent(QEvent *event) override;

protected slots:
    void closeEditor(QWidget *editor, QAbstractItemDelegate::EndEditHint hint) override;

private:
    bool offerKey(QKeyEvent *event);
    bool showWholeText(const QHelpEvent &event);
    void beginUrlDrag();
    void endUrlDrag();

    NameSearch m_nameSearch;
    DragDataOf m_dragDataOf;
    QString m_emptyText;
    // How the table stood before files were dragged over it.
    bool m_isUrlDrag = false;
    QPalette m_palette;
    QPersistentModelIndex m_current;
    QItemSelection m_selection;
    QItemSelectionModel *m_headerSelection = nullptr;
};
