#pragma once

#include <QImage>
#include <QImageIOHandler>
#include <QSize>

class QIODevice;

/**
 * Reads one picture out of bytes that may be broken or made to do harm. What that takes is unbounded, so it
 * is done in a process of its own only (PictureChild). Borrows the device.
 */
class PictureReader
{
public:
    explicit PictureReader(QIODevice &device) : m_device(device) {}

    /**
     * Upright, on the canvas of a thumbnail. It is read at a reduced size where its format can do that
     * without a visible difference. Null for what is no picture, broken or a cut JPEG.
     */
    QImage thumbnail();
    /** The whole picture, upright; null for what is none or too large to be shown. */
    QImage whole();

    /** What its header tells. */
    struct Facts
    {
        QSize size; ///< as it is stored
        QImageIOHandler::Transformations transformation;
        int pictureCount = 0;
    };
    Facts facts();

private:
    QImage decode(QIODevice &device, const QByteArray &format, QSize &fullSize);
    static QSize reducedSize(const QSize &size, const QByteArray &format);

    QIODevice &m_device;
};
