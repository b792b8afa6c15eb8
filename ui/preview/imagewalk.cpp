#include "ui/preview/imagewalk.h"

#include "core/records/file.h"
#include "models/contents/filepictures.h"
#include "models/contents/sorter.h"

#include <algorithm>

ImageWalk::ImageWalk(const Sorter *sorter, QObject *parent) : QObject(parent), m_sorter(sorter)
{
    connectModel();
}

void ImageWalk::connectModel()
{
    connect(m_sorter, &QAbstractItemModel::rowsInserted, this, &ImageWalk::forgetRows);
    connect(m_sorter, &QAbstractItemModel::rowsRemoved, this, &ImageWalk::forgetRows);
    connect(m_sorter, &QAbstractItemModel::layoutChanged, this, &ImageWalk::forgetRows);
    connect(m_sorter, &QAbstractItemModel::modelReset, this, &ImageWalk::forgetRows);
    connect(m_sorter, &QAbstractItemModel::dataChanged, this,
            [this](const QModelIndex &, const QModelIndex &, const QVector<int> &roles) {
                // Thumbnails arrive by the hundred while one scrolls.
                if (roles != QVector<int>{Qt::DecorationRole})
                    forgetRows();
            });
}

void ImageWalk::forgetRows()
{
    const int row = currentRow();
    if (row >= 0)
        m_lastRow = row;
    m_isKnown = false;
    emit changed();
}

void ImageWalk::setCurrent(qint64 fileId)
{
    m_currentId = fileId;
    m_lastRow = qMax(0, currentRow());
}

void ImageWalk::findRows()
{
    if (m_isKnown)
        return;
    m_rows.clear();
    const int count = m_sorter->rowCount();
    for (int row = 0; row < count; ++row) {
        if (isPicture(row))
            m_rows.push_back(row);
    }
    m_isKnown = true;
}

int ImageWalk::currentRow() const
{
    return m_sorter->indexOf(m_currentId).row();
}

bool ImageWalk::isPicture(int row) const
{
    const File *file = m_sorter->fileAt(row);
    return file && file->iconKind() == FilePictures::thumbnailKind;
}

qint64 ImageWalk::idAt(std::vector<int>::const_iterator place) const
{
    const qint64 fileId = m_sorter->fileAt(*place)->id();
    return fileId == m_currentId ? 0 : fileId;
}

qint64 ImageWalk::next()
{
    findRows();
    if (m_rows.empty())
        return 0;
    const int row = currentRow();
    // A row that went gave its place to the one after it.
    const auto place = row >= 0 ? std::upper_bound(m_rows.cbegin(), m_rows.cend(), row)
                                : std::lower_bound(m_rows.cbegin(), m_rows.cend(), m_lastRow);
    return idAt(place == m_rows.cend() ? m_rows.cbegin() : place);
}

qint64 ImageWalk::previous()
{
    findRows();
    if (m_rows.empty())
        return 0;
    const int row = currentRow();
    const auto place = std::lower_bound(m_rows.cbegin(), m_rows.cend(), row >= 0 ? row : m_lastRow);
    return idAt((place == m_rows.cbegin() ? m_rows.cend() : place) - 1);
}

int ImageWalk::position()
{
    findRows();
    const int row = currentRow();
    const auto place = std::lower_bound(m_rows.cbegin(), m_rows.cend(), row);
    return row >= 0 && place != m_rows.cend() && *place == row ? int(place - m_rows.cbegin()) + 1 : 0;
}

int ImageWalk::count()
{
    findRows();
    return int(m_rows.size());
}
