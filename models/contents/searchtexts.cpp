#include "models/contents/searchtexts.h"

#include "core/records/file.h"

#include <QChar>

#include <algorithm>
#include <cstring>
#include <limits>

namespace {
constexpr char separator = '\xFF';
// Looked at one by one: beyond so many it is sooner to begin anew.
constexpr size_t mostOutdated = 2000;
// Beyond it the ends of rows have no room in their numbers.
constexpr size_t mostBytes = std::numeric_limits<quint32>::max();

void appendCharacter(std::string &text, uint character)
{
    const auto put = [&text](uint byte) { text.push_back(static_cast<char>(byte)); };
    if (character < 0x80) {
        put(character);
    } else if (character < 0x800) {
        put(0xC0 | character >> 6);
        put(0x80 | (character & 0x3F));
    } else if (character < 0x10000) {
        put(0xE0 | character >> 12);
        put(0x80 | (character >> 6 & 0x3F));
        put(0x80 | (character & 0x3F));
    } else {
        put(0xF0 | character >> 18);
        put(0x80 | (character >> 12 & 0x3F));
        put(0x80 | (character >> 6 & 0x3F));
        put(0x80 | (character & 0x3F));
    }
}

void appendFolded(std::string &target, QLatin1String text)
{
    const size_t start = target.size();
    target.resize(start + static_cast<size_t>(text.size()));
    char *folded = target.data() + start;
    uchar all = 0;
    // Without a way out in the middle it is done many at a time.
    for (int i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<uchar>(text.data()[i]);
        all = uchar(all | byte);
        folded[i] = static_cast<char>(byte + (uchar(byte - 'A') < 26 ? 32 : 0));
    }
    if (all < 0x80)
        return;
    target.resize(start);
    for (const char byte : text)
        appendCharacter(target, QChar::toCaseFolded(uint(static_cast<uchar>(byte))));
}

/** False when there is half a character, which is put there as if it were a whole one. */
bool appendFolded(std::string &target, QStringView text)
{
    bool areWhole = true;
    for (qsizetype i = 0; i < text.size(); ++i) {
        uint character = text.at(i).unicode();
        if (QChar::isSurrogate(character)) {
            const bool isPair =
                text.at(i).isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate();
            if (isPair) {
                character = QChar::surrogateToUcs4(text.at(i), text.at(i + 1));
                ++i;
            }
            areWhole = areWhole && isPair;
        }
        appendCharacter(target, QChar::toCaseFolded(character));
    }
    return areWhole;
}
} // namespace

void SearchTexts::clear()
{
    *this = SearchTexts();
}

void SearchTexts::reserve(int rows)
{
    // What is not used takes no memory; what is moved does, twice.
    constexpr size_t bytesARow = 64;
    m_bytes.reserve(static_cast<size_t>(rows) * bytesARow);
    m_ends.reserve(static_cast<size_t>(rows));
}

void SearchTexts::readScratch(const File &file)
{
    m_scratch.clear();
    const auto append = [this](const auto &text) { appendFolded(m_scratch, text); };
    file.visitName(append);
    m_scratch.push_back(separator);
    file.visitDescription(append);
    m_scratch.push_back(separator);
    if (const char *own = file.ownIdCode())
        append(QLatin1String(own, static_cast<int>(qstrnlen(own, 8))));
    else
        append(QStringView(file.idCode()));
    m_scratch.push_back(separator);
}

void SearchTexts::append(const File &file)
{
    readScratch(file);
    if (m_bytes.size() + m_scratch.size() > mostBytes) {
        m_outdated.insert(size());
        m_scratch.clear();
    }
    m_bytes.insert(m_bytes.end(), m_scratch.begin(), m_scratch.end());
    m_ends.push_back(static_cast<quint32>(m_bytes.size()));
}

void SearchTexts::update(int row, const File &file)
{
    if (row >= size())
        return;
    readScratch(file);
    const auto start = m_bytes.begin() + static_cast<std::ptrdiff_t>(startOf(row));
    const auto end = m_bytes.begin() + static_cast<std::ptrdiff_t>(m_ends[static_cast<size_t>(row)]);
    if (static_cast<size_t>(end - start) < m_scratch.size()) {
        m_outdated.insert(row);
        if (m_outdated.size() > mostOutdated)
            clear();
        return;
    }
    m_outdated.erase(row);
    std::fill(std::copy(m_scratch.begin(), m_scratch.end(), start), end, separator);
}

void SearchTexts::removeRows(const QVector<int> &rows)
{
    // Rows that are not there yet will be read as what they are then.
    const auto last = std::lower_bound(rows.cbegin(), rows.cend(), size());
    if (last == rows.cbegin())
        return;
    for (auto row = rows.cbegin(); row != last; ++row)
        std::memset(m_bytes.data() + startOf(*row), separator,
                    m_ends[static_cast<size_t>(*row)] - startOf(*row));
    auto removed = rows.cbegin();
    size_t target = static_cast<size_t>(*removed);
    for (size_t row = target; row < m_ends.size(); ++row) {
        if (removed != last && static_cast<size_t>(*removed) == row)
            ++removed;
        else
            m_ends[target++] = m_ends[row];
    }
    m_ends.resize(target);
    std::set<int> outdated;
    for (const int row : m_outdated) {
        const auto place = std::lower_bound(rows.cbegin(), last, row);
        if (place == last || *place != row)
            outdated.insert(row - static_cast<int>(place - rows.cbegin()));
    }
    m_outdated.swap(outdated);
}

std::vector<int> SearchTexts::find(const std::string &folded, const std::function<bool(int row)> &isHit) const
{
    std::vector<int> rows;
    const char *const begin = m_bytes.data();
    const char *const end = begin + (m_ends.empty() ? 0 : m_ends.back());
    const char *place = begin;
    auto outdated = m_outdated.cbegin();
    const auto addOutdated = [&](int before) {
        for (; outdated != m_outdated.cend() && *outdated < before; ++outdated) {
            if (isHit(*outdated))
                rows.push_back(*outdated);
        }
    };
    size_t row = 0;
    while (place < end) {
        const void *found = memmem(place, static_cast<size_t>(end - place), folded.data(), folded.size());
        if (!found)
            break;
        const auto offset = static_cast<size_t>(static_cast<const char *>(found) - begin);
        // Hits that are far from each other have many rows between them.
        constexpr size_t nearRows = 16;
        const size_t near = std::min(row + nearRows, m_ends.size() - 1);
        if (m_ends[near] <= offset)
            row = static_cast<size_t>(
                std::upper_bound(m_ends.begin() + static_cast<std::ptrdiff_t>(near), m_ends.end(), offset) -
                m_ends.begin());
        while (m_ends[row] <= offset)
            ++row;
        addOutdated(static_cast<int>(row));
        if (outdated == m_outdated.cend() || *outdated != static_cast<int>(row))
            rows.push_back(static_cast<int>(row));
        place = begin + m_ends[row];
    }
    addOutdated(size());
    return rows;
}

std::string SearchTexts::folded(QStringView text)
{
    std::string folded;
    return appendFolded(folded, text) ? folded : std::string();
}
