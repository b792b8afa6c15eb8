#include "ui/widgets/namesearch.h"

#include <QApplication>

int NameSearch::find(int rowCount, int current, const QString &typed)
{
    if (!m_nameAt || rowCount == 0 || typed.isEmpty())
        return -1;
    const bool isNew =
        !m_sinceLastKey.isValid() || m_sinceLastKey.elapsed() > QApplication::keyboardInputInterval();
    m_sinceLastKey.start();
    // The same letter again goes on to the next name with it.
    const bool isRepeated = !isNew && m_text == typed;
    m_text = isNew || isRepeated ? typed : m_text + typed;

    int row = qMax(0, current);
    if (current >= 0 && (isNew || isRepeated))
        ++row;
    for (int tried = 0; tried < rowCount; ++tried, ++row) {
        if (m_nameAt(row % rowCount).startsWith(m_text, Qt::CaseInsensitive))
            return row % rowCount;
    }
    return -1;
}
