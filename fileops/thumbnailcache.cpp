#include "fileops/thumbnailcache.h"

#include "app/viewsettings.h"
#include "fileops/fileoperationprovider.h"

#include <memory>

namespace {
constexpr int firstSize = 100;
}

ThumbnailCache::ThumbnailCache(QObject *parent) : QObject(parent), m_images(firstSize)
{
    readSettings();
}

void ThumbnailCache::setProvider(FileOperationProvider *provider)
{
    if (provider == m_provider)
        return;
    // Two connections would hand the same image to two owners.
    if (m_provider)
        disconnect(m_provider, nullptr, this, nullptr);
    m_provider = provider;
    if (provider)
        connect(provider, &FileOperationProvider::thumbnailLoaded, this, &ThumbnailCache::onThumbnailLoaded);
}

QImage *ThumbnailCache::thumbnail(qint64 fileId)
{
    if (fileId <= 0)
        return nullptr;
    if (QImage *image = m_images.object(fileId))
        return image;
    QImage *placeholder = insertPlaceholder(fileId);
    if (m_provider)
        m_provider->loadThumbnails({fileId});
    return placeholder;
}

void ThumbnailCache::reloadThumbnail(qint64 fileId)
{
    if (fileId <= 0)
        return;
    insertPlaceholder(fileId);
    if (m_provider)
        m_provider->loadThumbnails({fileId});
}

void ThumbnailCache::reloadHeld(const QVector<qint64> &fileIds)
{
    QVector<qint64> held;
    for (const qint64 id : fileIds) {
        if (m_images.contains(id))
            held.append(id);
    }
    for (const qint64 id : qAsConst(held))
        insertPlaceholder(id);
    if (m_provider && !held.isEmpty())
        m_provider->loadThumbnails(held);
}

void ThumbnailCache::remove(qint64 fileId)
{
    m_images.remove(fileId);
}

void ThumbnailCache::remove(const QVector<qint64> &fileIds)
{
    for (const qint64 id : fileIds)
        m_images.remove(id);
}

void ThumbnailCache::readSettings()
{
    m_images.setMaxCost(qMax(1, ViewSettings::thumbnailCacheSize()));
}

void ThumbnailCache::clearCache()
{
    m_images.clear();
}

void ThumbnailCache::onThumbnailLoaded(qlonglong fileId, QImage *image)
{
    QImage *held = m_images.object(fileId);
    if (!held) {
        m_images.insert(fileId, image, 1);
        return;
    }
    const std::unique_ptr<QImage> received(image);
    if (received->isNull())
        received->load(QStringLiteral(":/icons/paper.png"));
    held->swap(*received);
    emit imageLoaded(fileId, held);
}

QImage *ThumbnailCache::insertPlaceholder(qint64 fileId)
{
    m_images.insert(fileId, new QImage(QStringLiteral(":/icons/loadingthumbnail.png")), 1);
    return m_images.object(fileId);
}
