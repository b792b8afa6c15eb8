#pragma once

#include <QStringList>

#include <vector>

class ContentsModel;

/**
 * Rows of the ContentsModel in the order of their tags' names joined by ", ", equal ones by the id of the
 * file, without the texts: each tag has a rank among all names, and the ranks of a file's first tags make one
 * number, its head. Taken of the present names and files, for one piece of work on many rows. GUI thread.
 */
class TagOrder
{
public:
    explicit TagOrder(const ContentsModel &contents);

    bool isLess(int leftRow, int rightRow) const;
    void sort(std::vector<int> &rows) const;
    /** Worth it before so many comparisons that most rows take part in one. */
    void noteAllHeads();

private:
    void rankNames();
    void noteContinuations(const std::vector<int> &order, const QStringList &pieces);
    quint64 headOf(int row) const
    {
        return m_heads.empty() ? makeHead(row) : m_heads[static_cast<size_t>(row)];
    }
    quint64 makeHead(int row) const;
    bool isHeadLess(quint64 left, quint64 right, int leftRow, int rightRow) const;
    bool isTailLess(quint64 head, int leftRow, int rightRow) const;
    bool isTextLess(int leftRow, int rightRow) const;
    bool isContinuation(quint32 rank, quint32 other) const;

    const ContentsModel &m_contents;
    int m_rankBits = 16;
    // By the number of the tag, with others behind it and as the last one; 0 for a tag without a name.
    std::vector<quint32> m_inner;
    std::vector<quint32> m_last;
    std::vector<quint32> m_continuations; // by rank: the highest rank of a text that begins with this one
    std::vector<quint64> m_heads;         // by row, once they are noted
};
