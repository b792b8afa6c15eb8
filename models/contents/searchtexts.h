#pragma once

#include <QStringView>
#include <QVector>

#include <functional>
#include <set>
#include <string>
#include <vector>

class File;

/**
 * What a search looks at, of all files beside each other: name, description and id code without regard to
 * case, in UTF-8. So a search of a million files is one of some forty megabytes, which a processor reads in a
 * few milliseconds. Rows are those of ContentsModel; the first ones may be there before all are. GUI thread.
 */
class SearchTexts
{
public:
    /** How many rows are there. */
    int size() const { return static_cast<int>(m_ends.size()); }
    void clear();
    void reserve(int rows);
    void append(const File &file);
    /** The texts of a file may be others now. */
    void update(int row, const File &file);
    /** Takes rows out, given in ascending order. */
    void removeRows(const QVector<int> &rows);

    /** The rows whose texts contain a folded text, ascending; isHit() looks at one that is not up to date. */
    std::vector<int> find(const std::string &folded, const std::function<bool(int row)> &isHit) const;

    /** A text as it is looked for; empty when it has half a character, which has no UTF-8. */
    static std::string folded(QStringView text);

private:
    size_t startOf(int row) const { return row == 0 ? 0 : m_ends[static_cast<size_t>(row) - 1]; }
    void readScratch(const File &file);

    // Each text ends in a byte that UTF-8 does not have. What was of rows that are gone is filled with it,
    // and counts to the next row.
    std::vector<char> m_bytes;
    std::vector<quint32> m_ends; ///< of rows
    std::set<int> m_outdated;    ///< rows whose new texts have no room
    std::string m_scratch;
};
