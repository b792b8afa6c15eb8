#include "ui/views/keptselection.h"

#include "core/records/file.h"
#include "models/contents/sorter.h"

#include <QItemSelectionModel>
#include <QSet>

void KeptSelection::keep(const QVector<qint64> &fileIds, qint64 currentId)
{
    m_ids = fileIds;
    m_currentId = currentId;
}

void KeptSelection::restore(QItemSelectionModel *selection, const Sorter &sorter)
{
    const QSet<qint64> wanted(m_ids.begin(), m_ids.end());
    const int lastColumn = sorter.columnCount() - 1;
    QItemSelection selected;
    QModelIndex current;
    for (int row = 0; row < sorter.rowCount() && !(wanted.isEmpty() && m_currentId == 0); ++row) {
        const qint64 fileId = sorter.fileAt(row)->id();
        if (fileId == m_currentId)
            current = sorter.index(row, 0);
        if (!wanted.contains(fileId))
            continue;
        // A range a run of rows: a selection of many single ranges would be slow.
        if (!selected.isEmpty() && selected.last().bottom() == row - 1)
            selected.last() = QItemSelectionRange(selected.last().topLeft(), sorter.index(row, lastColumn));
        else
            selected.append(QItemSelectionRange(sorter.index(row, 0), sorter.index(row, lastColumn)));
    }
    selection->setCurrentIndex(current, QItemSelectionModel::NoUpdate);
    selection->select(selected, QItemSelectionModel::ClearAndSelect);
    m_ids.clear();
}
