#pragma once

#include "fileops/files/regularfile.h"

#include <QByteArray>
#include <QImage>
#include <QImageIOHandler>
#include <QString>

/** What a picture is read for. */
enum class PictureUse {
    Thumbnail, ///< a small canvas with the picture in its middle
    Whole,     ///< all of its pixels, upright
    Facts      ///< what its header tells
};

/** What reading one picture may take. */
struct PictureLimits
{
    qint64 bytes = 0;    ///< of memory, beyond what the reader itself takes
    int seconds = 0;     ///< of a processor
    int mostSeconds = 0; ///< of a processor, for large files

    qint64 bytesFor(qint64 fileSize) const
    {
        // Some decoders map the file, and what is mapped counts.
        constexpr qint64 mostMapped = 384LL * 1024 * 1024;
        return bytes + qBound(qint64(0), fileSize, mostMapped);
    }
    int secondsFor(qint64 fileSize) const
    {
        // Well below what decoders do. The crafted are small: whatever a large file takes, its bytes tell.
        constexpr qint64 bytesPerSecond = 16LL * 1024 * 1024;
        return seconds +
               int(qBound(qint64(0), fileSize / bytesPerSecond, qint64(qMax(0, mostSeconds - seconds))));
    }
};

/** A picture that is to be read: a file, or bytes when there is no path. */
struct PictureRequest
{
    PictureUse use = PictureUse::Thumbnail;
    QString path;
    QByteArray bytes;
    bool isStored = false; ///< of a thumbnail: as the bytes of its table, in place of pixels
};

/** What became of it. */
struct PictureAnswer
{
    enum State {
        Read,
        Unreadable, ///< no picture, broken or too large
        Failed, ///< it ended its reader, or took too long; the same picture is not tried again in this run
        Canceled,
        Unavailable ///< no process that reads pictures can be started
    };

    State state = Unavailable;
    QImage image;    ///< upright; null for facts
    QByteArray png;  ///< of a thumbnail that is to be stored
    FileStamp stamp; ///< of the file as it was read

    // Of the facts.
    QSize size;
    QImageIOHandler::Transformations transformation;
    int pictureCount = 0; ///< frames, pages or sizes
};
