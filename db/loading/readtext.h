#pragma once

#include <QStringView>

#include <vector>

/**
 * One text as a database sends it, turned into characters. It keeps its room from one row to the next, as a
 * text of its own for each column of a million rows takes longer than reading them.
 */
class ReadText
{
public:
    QStringView view() const { return QStringView(m_characters.data(), m_size); }
    void clear() { m_size = 0; }
    /** Takes bytes of ASCII; false, and nothing is taken, when there are others among them. */
    bool setAscii(const char *bytes, int size);
    /** Takes UTF-8, of which a mark of the encoding at its head is a letter like others. */
    void setUtf8(const char *bytes, int size);
    /** What is beyond the bound of texts is left out, as everywhere. */
    void set(QStringView text);

private:
    std::vector<QChar> m_characters;
    qsizetype m_size = 0;
};
