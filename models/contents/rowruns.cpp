#include "models/contents/rowruns.h"

namespace RowRuns {
int count(const QVector<int> &rows)
{
    int runs = 0;
    for (int i = 0; i < rows.size(); ++i)
        runs += i == 0 || rows.at(i) != rows.at(i - 1) + 1 ? 1 : 0;
    return runs;
}

int start(const QVector<int> &rows, int place)
{
    while (place > 0 && rows.at(place - 1) == rows.at(place) - 1)
        --place;
    return place;
}
} // namespace RowRuns
