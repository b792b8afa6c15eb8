#include "models/filefiltermodel.h"

#include "app/viewsettings.h"
#include "models/contentsmodel.h"

FileFilterModel::FileFilterModel(QObject *parent) : QSortFilterProxyModel(parent) {}

void FileFilterModel::setSourceModel(QAbstractItemModel *sourceModel)
{
    if (m_contents)
        disconnect(m_contents, nullptr, this, nullptr);
    m_contents = qobject_cast<ContentsModel *>(sourceModel);
    if (m_contents) {
        // Slots run in the order of connecting: the bits have to be there when the base class asks for them.
        connect(m_contents, &QAbstractItemModel::rowsInserted, this, &FileFilterModel::followContents);
        connect(m_contents, &QAbstractItemModel::dataChanged, this, &FileFilterModel::followRecords);
        connect(m_contents, &QAbstractItemModel::rowsRemoved, this, &FileFilterModel::followRows);
        connect(m_contents, &QAbstractItemModel::layoutChanged, this, &FileFilterModel::followRows);
        connect(m_contents, &QAbstractItemModel::modelReset, this, &FileFilterModel::followRows);
        connect(m_contents, &ContentsModel::contentsChanged, this, &FileFilterModel::announceDTags);
        runSelection();
    }
    QSortFilterProxyModel::setSourceModel(sourceModel);
}

void FileFilterModel::setSpecialNode(NodeType type)
{
    m_selection.setSpecialNode(type, ViewSettings::newFilesTimeout());
    applySelection();
}

void FileFilterModel::setTagRequirements(const TagRequirements &requirements)
{
    m_selection.setRequirements(requirements);
    applySelection();
}

void FileFilterModel::applySelection()
{
    runSelection();
    invalidate();
    m_announcedDTags = dTags();
    emit dTagsChanged(m_announcedDTags);
}

void FileFilterModel::runSelection()
{
    m_areAcceptedFilesKnown = false;
    if (!m_contents)
        return;
    m_selection.run(m_contents->fileIndex());
    m_seenRevision = m_contents->fileIndex().revision();
}

void FileFilterModel::followContents()
{
    if (m_contents->fileIndex().revision() != m_seenRevision)
        runSelection();
}

void FileFilterModel::followRecords(const QModelIndex &topLeft, const QModelIndex &bottomRight,
                                    const QVector<int> &roles)
{
    // Another picture moves no file.
    if (roles == QVector<int>{Qt::DecorationRole})
        return;
    followContents();
    emit recordsChanged(topLeft.row(), bottomRight.row());
}

void FileFilterModel::followRows()
{
    followContents();
    emit recordsChanged(-1, -1);
}

void FileFilterModel::announceDTags()
{
    if (m_announcedDTags == dTags())
        return;
    m_announcedDTags = dTags();
    emit dTagsChanged(m_announcedDTags);
}

const QVector<qint64> &FileFilterModel::acceptedFiles() const
{
    if (!m_areAcceptedFilesKnown) {
        m_acceptedFiles = m_contents ? m_selection.acceptedFiles(m_contents->fileIndex()) : QVector<qint64>();
        m_areAcceptedFilesKnown = true;
    }
    return m_acceptedFiles;
}

const File *FileFilterModel::fileAt(int row) const
{
    return m_contents ? m_contents->fileAt(contentsRow(row)) : nullptr;
}

bool FileFilterModel::filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const
{
    return m_contents && !sourceParent.isValid() && m_selection.isAccepted(sourceRow);
}
