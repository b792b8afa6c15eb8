#include "fileops/provider/thumbnailcache.h"

#include "app/settings/viewsettings.h"
#include "fileops/provider/fileoperationprovider.h"

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
    if (!provider)
        return;
    connect(provider, &FileOperationProvider::thumbnailLoaded, this, &ThumbnailCache::onThumbnailLoaded);
    // The next one who paints them asks anew.
    connect(provider, &FileOperationProvider::thumbnailsFailed, this,
            qOverload<const QVector<qint64> &>(&ThumbnailCache::remove));
}

QImage *ThumbnailCache::thumbnail(qint64 fileId)
{
    if (fileId <= 0)
        return nullptr;
    if (Entry *entry = m_images.object(fileId))
        return &entry->image;
    // Put first: it keeps each repainting until the answer from asking once more.
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
    // Apart from the look above, as each insertion may push out another one that is held.
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
    // Each picture costs 1, so that the setting is a number of pictures.
    m_images.setMaxCost(qMax(m_least, ViewSettings::thumbnailCacheSize()));
}

void ThumbnailCache::setLeast(int count)
{
    const int least = qMax(1, count);
    if (m_least == least)
        return;
    m_least = least;
    readSettings();
}

void ThumbnailCache::clearCache()
{
    m_images.clear();
}

void ThumbnailCache::onThumbnailLoaded(qlonglong fileId, QImage *image)
{
    const std::unique_ptr<QImage> received(image);
    Entry *held = m_images.object(fileId);
    // Pushed out while it was being loaded; it is here now, and may be wanted again.
    if (!held) {
        m_images.insert(fileId, new Entry(*this, fileId, *received, false), 1);
        return;
    }
    held->isAwaited = false;
    if (received->isNull())
        received->load(QStringLiteral(":/icons/paper.png"));
    // Within the entry, whose address a view may hold until its event is over.
    held->image.swap(*received);
    emit imageLoaded(fileId, &held->image);
}

QImage *ThumbnailCache::insertPlaceholder(qint64 fileId)
{
    // Read once: a page of new pictures asks for many at a time.
    static const QImage placeholder(QStringLiteral(":/icons/loadingthumbnail.png"));
    m_images.insert(fileId, new Entry(*this, fileId, placeholder, true), 1);
    return &m_images.object(fileId)->image;
}

ThumbnailCache::Entry::~Entry()
{
    // Scrolled past before its turn came: the worker spares itself the reading.
    if (isAwaited && cache.m_provider)
        cache.m_provider->forgetThumbnail(fileId);
}
