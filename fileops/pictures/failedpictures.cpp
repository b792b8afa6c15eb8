#include "fileops/pictures/failedpictures.h"

#include <QCryptographicHash>

namespace {
bool isInMemory(const PictureRequest &request)
{
    return request.path.isEmpty();
}
} // namespace

bool FailedPictures::contains(const PictureRequest &request) const
{
    {
        const QMutexLocker locker(&m_mutex);
        if (isInMemory(request) ? !m_sizes.contains(request.bytes.size()) : m_keys.isEmpty())
            return false;
    }
    const FileStamp stamp = isInMemory(request) ? FileStamp() : RegularFile::stampOf(request.path);
    const QByteArray key = keyOf(request, stamp);
    const QMutexLocker locker(&m_mutex);
    return m_keys.contains(key);
}

void FailedPictures::add(const PictureRequest &request, const FileStamp &stamp)
{
    const QByteArray key = keyOf(request, stamp);
    const QMutexLocker locker(&m_mutex);
    m_keys.insert(key);
    if (isInMemory(request))
        m_sizes.insert(request.bytes.size());
}

QByteArray FailedPictures::keyOf(const PictureRequest &request, const FileStamp &stamp)
{
    // What is too much for a thumbnail may do for the picture itself.
    const QByteArray use = QByteArray::number(int(request.use)) + ' ';
    if (isInMemory(request))
        return use + QCryptographicHash::hash(request.bytes, QCryptographicHash::Sha1);
    return use + QByteArray::number(stamp.size) + ' ' + QByteArray::number(stamp.modified) + ' ' +
           request.path.toUtf8();
}
