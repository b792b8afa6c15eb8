#pragma once

#include "ui/widgets/selectedrows.h"

class QAbstractItemView;

/**
 * Drags what is selected in a view, as the given function carries it or else the model; nothing without a
 * selection. Returns when the drag has ended.
 */
void dragSelection(QAbstractItemView *view, const DragDataOf &dragDataOf, Qt::DropActions actions,
                   Qt::DropAction usual = Qt::IgnoreAction);
