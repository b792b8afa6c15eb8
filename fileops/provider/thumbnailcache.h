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
    QList<qint64> heldFiles() const { return m_images.keys(); }
    /** Takes over the size from the settings, dropping at once what is too much. */
    void readSettings();
    /** However small its size, it holds as many as are shown at once. */
    void setLeast(int count);

public slots:
    void clearCache();
    void onThumbnailLoaded(qlonglong fileId, QImage *image);

signals:
    void imageLoaded(qlonglong fileId, QImage *image);

private:
    /** A picture in the cache. One that goes while it is still awaited need not be loaded any more. */
    struct Entry
    {
        Entry(ThumbnailCache &owner, qint64 id, const QImage &picture, bool awaited)
            : cache(owner), fileId(id), image(picture), isAwaited(awaited)
        {
        }
        ~Entry();
        Entry(const Entry &) = delete;
        Entry &operator=(const Entry &) = delete;

        ThumbnailCache &cache;
        qint64 fileId;
        QImage image;
        bool isAwaited;
    };
    QImage *insertPlaceholder(qint64 fileId);

    // Before the entries, which tell it that they go.
    QPointer<FileOperationProvider> m_provider;
    QCache<qint64, Entry> m_images;
    int m_least = 1;
};
