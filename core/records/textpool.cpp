#include "core/records/textpool.h"

QString TextPool::share(QStringView text)
{
    if (text.isEmpty())
        return {};
    // Rows come in the order in which files were added, so that neighbours mostly share a folder.
    if (text == m_last)
        return m_last;

    // Only a look: the text is copied when the pool has no equal one.
    const QString key = QString::fromRawData(text.data(), static_cast<int>(text.size()));
    const auto known = m_texts.constFind(key);
    if (known != m_texts.constEnd()) {
        m_last = *known;
        return m_last;
    }
    if (m_texts.size() >= m_limit)
        dropUnused();
    m_last = text.toString();
    m_texts.insert(m_last);
    return m_last;
}

void TextPool::dropUnused()
{
    // It would count as a user of its text.
    m_last.clear();
    for (auto text = m_texts.begin(); text != m_texts.end();) {
        // The pool alone holds it.
        if (text->isDetached())
            text = m_texts.erase(text);
        else
            ++text;
    }
    // Twice of what is left, so that a pass over all texts comes ever more seldom.
    m_limit = qMax(4096, 2 * m_texts.size());
}
