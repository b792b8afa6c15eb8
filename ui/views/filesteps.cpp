#include "ui/views/filesteps.h"

#include "core/records/file.h"
#include "models/contents/contentsmodel.h"
#include "models/contents/sorter.h"

#include <QAbstractItemView>
#include <QItemSelectionModel>

namespace FileSteps {

qint64 idBehind(const QItemSelectionModel *selection, const Sorter &sorter)
{
    int last = -1;
    if (selection) {
        for (const QItemSelectionRange &range : selection->selection())
            last = qMax(last, range.bottom());
    }
    const File *file = last < 0 ? nullptr : sorter.fileAt(last + 1);
    return file ? file->id() : 0;
}

void moveTo(QAbstractItemView *view, const Sorter &sorter, qint64 fileId)
{
    const QModelIndex index = sorter.indexOf(fileId);
    if (!index.isValid())
        return;
    const int column = view->currentIndex().column();
    view->setCurrentIndex(index.sibling(index.row(), qMax(int(ContentsModel::NameColumn), column)));
}

} // namespace FileSteps
