#pragma once

#include <QVector>

#include <vector>

/** Marks at rows that come in any order, some of them often, until they are taken ascending and once. */
class RowMarks
{
public:
    void mark(int row)
    {
        const auto at = static_cast<size_t>(row);
        if (at >= m_isMarked.size())
            m_isMarked.resize(at + 1);
        m_isMarked[at] = true;
    }
    void clear() { m_isMarked.clear(); }
    QVector<int> take()
    {
        QVector<int> rows;
        for (size_t row = 0; row < m_isMarked.size(); ++row) {
            if (m_isMarked[row])
                rows.append(static_cast<int>(row));
        }
        m_isMarked = {};
        return rows;
    }

private:
    std::vector<bool> m_isMarked;
};
