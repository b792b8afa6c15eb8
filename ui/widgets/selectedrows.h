#pragma once

#include <QModelIndex>

#include <functional>

class QItemSelection;
class QItemSelectionModel;
class QMimeData;

/** One index for each selected row, where QItemSelectionModel lists every cell. A row may come twice. */
QModelIndexList selectedRowIndexes(const QItemSelectionModel *selection);

/** What a drag of selected ranges carries, made without a list of their rows; the caller owns it. */
using DragDataOf = std::function<QMimeData *(const QItemSelection &ranges)>;
