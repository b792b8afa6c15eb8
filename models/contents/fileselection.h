#pragma once

#include "core/records/nodetype.h"
#include "models/contents/tagrequirements.h"

#include <QVector>

#include <vector>

class FileIndex;

/**
 * The selection of the main view: the requirements, and what one pass of them over the index of all files
 * gave: the accepted rows and, from how many of them have each tag, the D-Tags. GUI thread.
 */
class FileSelection
{
public:
    /** 0 until something was selected, which accepts no file. */
    NodeType nodeType() const { return m_nodeType; }
    const TagRequirements &requirements() const { return m_requirements; }

    /** Empties the tag requirements. The time-out, in seconds, serves RecentlyAddedFiles. */
    void setSpecialNode(NodeType type, unsigned int newFilesTimeout);
    void setRequirements(const TagRequirements &requirements);

    /** Looks at all rows anew and gives the accepted ones, ascending, in a vector that it takes over. */
    void run(const FileIndex &index, std::vector<int> &rows);

    // The same in parts, for who wants the rows alone: what is known before the first one, then block by
    // block.
    static constexpr int rowsPerBlock = 4096;
    void begin();
    /**
     * Writes the accepted ones of at most so many rows, ascending, and gives the end of what was written. The
     * target has room for one more than these rows. The index is the same for all of them.
     */
    int *keep(const FileIndex &index, int first, int last, int *target);

    /** Tags that are on some but not on all of the accepted files, by rising id; only for TagNode. */
    const QVector<qint64> &dTags() const { return m_dTags; }
    /** How many of the accepted files have the tag of a number of the index; only for TagNode. */
    int count(int tagNumber) const { return static_cast<int>(m_counts[static_cast<size_t>(tagNumber)]); }
    /** Adds the tags of some rows to counts by their numbers. */
    static void countTags(const FileIndex &index, const int *first, const int *last,
                          std::vector<quint32> &counts);

private:
    // A table from tag number to the requirements that the tag meets, as bits. A file is accepted when the
    // bits of its tags, cut to those tested, are the wanted ones.
    struct Round
    {
        std::vector<quint8> marks;
        quint8 tested = 0;
        quint8 wanted = 0;
    };

    /** The round of its number: seven groups each, with those excluded in the first. */
    Round compiledRound(const FileIndex &index, const QVector<QVector<qint64>> &groups, int number) const;
    QVector<QVector<qint64>> requiredGroups() const;
    int *keepSpecial(const FileIndex &index, int first, int last, int *target) const;
    int *keepTagged(const FileIndex &index, int first, int last, int *target);
    void findDTags(const FileIndex &index, int acceptedCount);

    NodeType m_nodeType = NodeType(0);
    TagRequirements m_requirements;
    unsigned int m_newFilesTimeout = 0;
    // Of the present pass.
    QVector<QVector<qint64>> m_groups;
    std::vector<Round> m_rounds;
    qint64 m_oldestAddition = 0;
    std::vector<quint32> m_counts;
    QVector<qint64> m_dTags;
};
