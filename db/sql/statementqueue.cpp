#include "db/sql/statementqueue.h"

#include <utility>

void StatementQueue::open()
{
    close();
    m_isOpen = true;
}

QStringList StatementQueue::take()
{
    return std::exchange(m_waiting, {});
}

QStringList StatementQueue::takeExpected()
{
    QStringList expected = std::exchange(m_expected, {});
    expected.removeDuplicates();
    return expected;
}

void StatementQueue::keepAnswer(const QString &query, const TableData &rows)
{
    m_answers.insert(query, rows);
}

bool StatementQueue::takeAnswer(const QString &query, TableData &rows)
{
    const auto answer = m_answers.find(query);
    if (answer == m_answers.end())
        return false;
    rows = answer.value();
    m_answers.erase(answer);
    return true;
}

void StatementQueue::close()
{
    m_isOpen = false;
    m_waiting.clear();
    m_expected.clear();
    for (TableData &rows : m_answers)
        freeRows(rows);
    m_answers.clear();
}
