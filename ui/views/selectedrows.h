#pragma once

#include <QModelIndex>

class QItemSelectionModel;

/** One index for each selected row, where QItemSelectionModel lists every cell. A row may come twice. */
QModelIndexList selectedRowIndexes(const QItemSelectionModel *selection);
