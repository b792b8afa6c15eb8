#include "models/counts/tagcounts.h"

#include "models/contents/contentsmodel.h"
#include "models/contents/filefiltermodel.h"

void TagCounts::setFiles(const FileFilterModel *files)
{
    m_files = files;
    connect(files, &FileFilterModel::dTagsChanged, this, &TagCounts::changed, Qt::UniqueConnection);
    connect(files->contents(), &ContentsModel::contentsChanged, this, &TagCounts::changed,
            Qt::UniqueConnection);
}

void TagCounts::setOn(bool on)
{
    if (m_isOn == on)
        return;
    m_isOn = on;
    emit changed();
}

void TagCounts::setReading(bool isReading)
{
    m_isReading = isReading;
    emit changed();
}

FileCount TagCounts::of(qint64 tagId) const
{
    if (!m_isOn || m_isReading || !m_files || !m_files->isUpToDate())
        return {};
    const int total = m_files->contents()->fileIndex().useCount(tagId);
    return FileCount(total, m_files->tellsFilesApart() ? m_files->shownWith(tagId) : -1);
}
