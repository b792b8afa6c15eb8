#pragma once

#include <QVector>

class QItemSelectionModel;
class Sorter;

/** The files that were selected, and the current one, while all records are read anew. */
class KeptSelection
{
public:
    void keep(const QVector<qint64> &fileIds, qint64 currentId);
    /** As far as they are still shown. */
    void restore(QItemSelectionModel *selection, const Sorter &sorter);

private:
    QVector<qint64> m_ids;
    qint64 m_currentId = 0;
};
