#pragma once

#include <QByteArray>
#include <QImage>
#include <QString>

class FileOperationQueries;

/**
 * Makes the small pictures of image files: 128 by 128 pixels, the picture centred on a transparent canvas.
 * Pictures are read in other processes (PicturePool). Worker's thread.
 */
class ThumbnailMaker
{
public:
    explicit ThumbnailMaker(FileOperationQueries &queries) : m_queries(queries) {}

    /** Stores the thumbnail of a file as a new row, or in place of the one that is there. */
    bool makeThumbnail(const QString &path, qint64 thumbnailId, bool isNew);
    /** The same with a canvas that was made before. */
    bool store(const QImage &canvas, qint64 thumbnailId, bool isNew);
    /** The same with the bytes of the table. */
    bool store(const QByteArray &png, qint64 thumbnailId, bool isNew);

    /** True for a file name whose ending is one of an image format that can be read. */
    static bool isImageName(const QString &path);
    /** The canvas with the picture; null when the file is no picture that can be read. Any thread. */
    static QImage thumbnailOf(const QString &path);
    /** The bytes of a thumbnail as its table holds them: a compressed PNG; empty on failure. Any thread. */
    static QByteArray encoded(const QImage &canvas);
    /**
     * The picture of such bytes, which may come out of anybody's database: null for another format, and for a
     * size that no thumbnail has. Any thread.
     */
    static QImage decoded(const QByteArray &png);

private:
    FileOperationQueries &m_queries;
};
