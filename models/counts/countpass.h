#pragma once

#include "models/contents/fileselection.h"

#include <vector>

class FileIndex;

/** Counts the files that a selection accepts, in steps between which other work goes on. GUI thread. */
class CountPass
{
public:
    /** The time-out, in seconds, serves RecentlyAddedFiles. */
    void begin(const FileIndex &index, NodeType type, const TagRequirements &requirements,
               unsigned int newFilesTimeout);
    void stop() { m_isRunning = false; }
    bool isRunning() const { return m_isRunning; }
    /** Of the index when it began; a count of another one is worth nothing. */
    quint64 revision() const { return m_revision; }
    /** Takes some thousands of files more; false when there are no more of them. */
    bool goOn(const FileIndex &index);

    const TagRequirements &requirements() const { return m_selection.requirements(); }
    int count() const { return m_count; }
    /** Of the counted files, where a time-out counts, in seconds since the epoch; 0 without any. */
    qint64 oldestAddition() const { return m_oldestAddition; }

private:
    FileSelection m_selection;
    bool m_isRunning = false;
    quint64 m_revision = 0;
    int m_row = 0;
    int m_count = 0;
    qint64 m_oldestAddition = 0;
    std::vector<int> m_rows;
};
