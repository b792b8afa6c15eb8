#pragma once

#include <QtGlobal>

class QAbstractItemView;
class QItemSelectionModel;
class Sorter;

/** Going from file to file in a view of files. GUI thread. */
namespace FileSteps {
/** The file behind the last selected one, 0 for none. */
qint64 idBehind(const QItemSelectionModel *selection, const Sorter &sorter);
/** Makes a file the current and the only selected one, if it is shown. */
void moveTo(QAbstractItemView *view, const Sorter &sorter, qint64 fileId);
} // namespace FileSteps
