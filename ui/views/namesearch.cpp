#include "ui/views/namesearch.h"

#include <QAbstractItemModel>
#include <QApplication>

QModelIndex NameSearch::find(const QAbstractItemModel *model, const QModelIndex &current,
                             const QString &typed, int role)
{
    if (!model || model->rowCount() == 0 || typed.isEmpty())
        return {};
    const bool isNew =
        !m_sinceLastKey.isValid() || m_sinceLastKey.elapsed() > QApplication::keyboardInputInterval();
    m_sinceLastKey.start();
    // The same letter again goes on to the next name with it.
    const bool isRepeated = !isNew && m_text == typed;
    m_text = isNew || isRepeated ? typed : m_text + typed;

    int row = current.isValid() ? current.row() : 0;
    if (current.isValid() && (isNew || isRepeated))
        row = (row + 1) % model->rowCount();
    const QModelIndex start = model->index(row, 0);
    const QModelIndexList found = model->match(start, role, m_text, 1, Qt::MatchStartsWith | Qt::MatchWrap);
    return found.isEmpty() ? QModelIndex() : found.first().sibling(found.first().row(), current.column());
}
