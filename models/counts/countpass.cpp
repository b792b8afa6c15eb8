#include "models/counts/countpass.h"

#include "models/contents/fileindex.h"

#include <algorithm>

void CountPass::begin(const FileIndex &index, NodeType type, const TagRequirements &requirements,
                      unsigned int newFilesTimeout)
{
    if (type == TagNode)
        m_selection.setRequirements(requirements);
    else
        m_selection.setSpecialNode(type, newFilesTimeout);
    m_selection.begin();
    m_rows.resize(FileSelection::rowsPerBlock + 1);
    m_isRunning = true;
    m_revision = index.revision();
    m_row = m_count = 0;
    m_oldestAddition = 0;
}

bool CountPass::goOn(const FileIndex &index)
{
    const int last = std::min(m_row + FileSelection::rowsPerBlock, index.size());
    const int *end = m_selection.keep(index, m_row, last, m_rows.data());
    m_count += static_cast<int>(end - m_rows.data());
    if (m_selection.nodeType() == RecentlyAddedFiles) {
        for (const int *row = m_rows.data(); row != end; ++row) {
            const qint64 addition = index.additions()[*row];
            m_oldestAddition = m_oldestAddition == 0 ? addition : std::min(m_oldestAddition, addition);
        }
    }
    m_row = last;
    m_isRunning = m_row < index.size();
    return m_isRunning;
}
