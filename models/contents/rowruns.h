#pragma once

#include <QVector>

/** Rows, ascending, as runs of such that follow each other. */
namespace RowRuns {
int count(const QVector<int> &rows);
/** The place of the first row of the run that ends at the given place. */
int start(const QVector<int> &rows, int place);
} // namespace RowRuns
