#include "db/loading/readtext.h"

#include "db/sql/longtext.h"

#include <QLatin1Char>
#include <QString>

#include <algorithm>
#include <cstring>

bool ReadText::setAscii(const char *bytes, int size)
{
    if (size > LongText::mostCharacters)
        return false;
    // The buffer only grows: it serves all texts of a reading, without an allocation for each.
    if (m_characters.size() < static_cast<size_t>(size))
        m_characters.resize(static_cast<size_t>(size));
    QChar *target = m_characters.data();
    // Without a way out in the middle it is done many at a time.
    uchar all = 0;
    for (int i = 0; i < size; ++i) {
        const auto byte = static_cast<uchar>(bytes[i]);
        all = uchar(all | byte);
        target[i] = QLatin1Char(bytes[i]);
    }
    m_size = all < 0x80 ? size : 0;
    return all < 0x80;
}

void ReadText::setUtf8(const char *bytes, int size)
{
    if (setAscii(bytes, size))
        return;
    // The toolkit drops the mark, which is a part of the stored text.
    const bool isMarked = size >= 3 && std::memcmp(bytes, "\xEF\xBB\xBF", 3) == 0;
    const QString text = QString::fromUtf8(bytes, size);
    set(isMarked ? QChar(QChar::ByteOrderMark) + text : text);
}

void ReadText::set(QStringView text)
{
    const QString kept = text.size() > LongText::mostCharacters ? LongText::kept(text.toString()) : QString();
    const QStringView source = kept.isEmpty() ? text : QStringView(kept);
    if (m_characters.size() < static_cast<size_t>(source.size()))
        m_characters.resize(static_cast<size_t>(source.size()));
    std::copy(source.begin(), source.end(), m_characters.begin());
    m_size = source.size();
}
