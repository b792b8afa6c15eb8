#include "ui/widgets/selectiondrag.h"

#include "ui/widgets/dragpicture.h"
#include "ui/widgets/dropwatch.h"

#include <QAbstractItemView>
#include <QDrag>
#include <QItemSelectionModel>
#include <QMimeData>

void dragSelection(QAbstractItemView *view, const DragDataOf &dragDataOf, Qt::DropActions actions,
                   Qt::DropAction usual)
{
    const QItemSelectionModel *selection = view->selectionModel();
    if (!selection || !selection->hasSelection())
        return;
    QMimeData *data = dragDataOf ? dragDataOf(selection->selection())
                                 : view->model()->mimeData(selectedRowIndexes(selection));
    if (!data)
        return;
    auto *drag = new QDrag(view);
    drag->setMimeData(data);
    setDragPicture(drag, view);
    DropWatch(drag).run(actions, usual);
}
