#pragma once

#include <QCache>
#include <QImage>
#include <QObject>
#include <QPointer>
#include <QVector>

class FileOperationProvider;

/**
 * Serves thumbnails from memory, the least recently used ones going first, and asks the provider for those it
 * lacks; until they come a placeholder stands in. Main thread. The images belong to the cache: a pointer is
 * good until control returns to the event loop.
 */
class ThumbnailCache : public QObject
{
    Q_OBJECT

public:
    explicit ThumbnailCache(QObject *parent = nullptr);

    /** Borrowed; another provider takes the place of the one before. */
    void setProvider(FileOperationProvider *provider);
    /** Null for an id not above 0 only. imageLoaded tells when a placeholder has become the picture. */
    QImage *thumbnail(qint64 fileId);
    /** Throws the old picture away and asks for it anew. */
    void reloadThumbnail(qint64 fileId);
    /** Asks anew for those of the files whose pictures are held; the others load when they are shown. */
    void reloadHeld(const QVector<qint64> &fileIds);
    void remove(qint64 fileId);
    void remove(const QVector<qint64> &fileIds);
    bool contains(qint64 fileId) const { return m_images.contains(fileId); }
    /** Takes over the size from the settings, dropping at once what is too much. */
    void readSettings();

public slots:
    void clearCache();
    void onThumbnailLoaded(qlonglong fileId, QImage *image);

signals:
    void imageLoaded(qlonglong fileId, QImage *image);

private:
    QImage *insertPlaceholder(qint64 fileId);

    QCache<qint64, QImage> m_images;
    QPointer<FileOperationProvider> m_provider;
};
