#include "ui/widgets/selectedrows.h"

#include <QItemSelectionModel>

QModelIndexList selectedRowIndexes(const QItemSelectionModel *selection)
{
    const QItemSelection ranges = selection->selection();
    int count = 0;
    for (const QItemSelectionRange &range : ranges)
        count += range.height();
    QModelIndexList indexes;
    indexes.reserve(count);
    for (const QItemSelectionRange &range : ranges) {
        for (int row = range.top(); row <= range.bottom(); ++row)
            indexes.append(range.model()->index(row, range.left(), range.parent()));
    }
    return indexes;
}
