#include "core/records/compacttext.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>

namespace {
bool fitsIntoBytes(QStringView text)
{
    // Without a way out in the middle it is done many characters at a time.
    ushort all = 0;
    for (const QChar character : text)
        all = ushort(all | character.unicode());
    return all < 0x100;
}
} // namespace

CompactText::~CompactText()
{
    std::free(m_block);
}

void CompactText::assign(QStringView text)
{
    std::free(std::exchange(m_block, nullptr));
    if (text.isEmpty())
        return;
    const auto size = static_cast<size_t>(text.size());
    // Latin-1 takes half of the room, and is what most names and paths are.
    const bool isWide = !fitsIntoBytes(text);
    void *memory = std::malloc(sizeof(quint32) + (isWide ? size * sizeof(QChar) : size));
    if (!memory)
        throw std::bad_alloc();
    m_block = static_cast<quint32 *>(memory);
    *m_block = static_cast<quint32>(size) | (isWide ? wideBit : 0);
    if (isWide)
        std::memcpy(wide(), text.data(), size * sizeof(QChar));
    else
        std::transform(text.begin(), text.end(), narrow(),
                       [](QChar character) { return character.toLatin1(); });
}

QString CompactText::toString() const
{
    if (!m_block)
        return {};
    return isWide() ? QString(wide(), size()) : QString::fromLatin1(narrow(), size());
}

bool CompactText::isEqual(QStringView text) const
{
    if (!m_block || text.size() != size())
        return !m_block && text.isEmpty();
    // Compared as it lies, without a QString for each of a million calls.
    return isWide() ? text == QStringView(wide(), size()) : text == QLatin1String(narrow(), size());
}
