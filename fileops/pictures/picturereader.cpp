#include "fileops/pictures/picturereader.h"

#include "fileops/pictures/jpegdevice.h"
#include "fileops/pictures/picturelimits.h"
#include "fileops/pictures/thumbnailcanvas.h"

#include <QImageReader>

namespace {
// Up to the byte of a PNG that says whether it is interlaced.
constexpr int headLength = 29;

qint64 pixels(const QSize &size)
{
    return static_cast<qint64>(size.width()) * size.height();
}

bool isSvg(const QByteArray &format)
{
    return format == "svg" || format == "svgz";
}

bool isJpeg(const QByteArray &format)
{
    return format == "jpeg" || format == "jpg";
}

/** The share of its size at which a JPEG is decoded; 0 for a small one, of which all is needed. */
int eighthsFor(const QSize &size, const QSize &needed)
{
    // What the decoder halves by itself costs no scaling of its own.
    int eighths = 1;
    while (size.width() * eighths / 8 < needed.width() || size.height() * eighths / 8 < needed.height())
        eighths *= 2;
    // Blocks that are not full blur the edges: they are to be small.
    const int block = 8 / qMin(eighths, 8);
    if (size.width() % block != 0 || size.height() % block != 0)
        eighths *= 2;
    return eighths < 8 ? eighths : 0;
}

/** What of a reduced JPEG is the picture: the decoder has filled up the last of its blocks. */
QRect shownPart(const QSize &size, const QSize &reduced)
{
    const auto part = [](int length, int share) {
        const int eighths = qRound(8.0 * share / length);
        const int decoded = (length * eighths + 7) / 8;
        return qRound(double(share) * length * eighths / (8.0 * decoded));
    };
    return {0, 0, part(size.width(), reduced.width()), part(size.height(), reduced.height())};
}

/** True for the one kind of PNG that is reduced line by line while it is read. */
bool isPlainPng(const QByteArray &head, QImage::Format format)
{
    return format == QImage::Format_RGB32 && head.size() == headLength && head.at(headLength - 1) == 0;
}
} // namespace

QImage PictureReader::thumbnail()
{
    const QByteArray format = QImageReader::imageFormat(&m_device);
    QSize fullSize;
    if (!isJpeg(format))
        return ThumbnailCanvas::with(decode(m_device, format, fullSize), fullSize);
    JpegDevice jpeg(m_device);
    const QImage picture = decode(jpeg, format, fullSize);
    return jpeg.isCut() ? QImage() : ThumbnailCanvas::with(picture, fullSize);
}

QImage PictureReader::whole()
{
    QImageReader reader(&m_device, QImageReader::imageFormat(&m_device));
    reader.setAutoTransform(true);
    // A file may tell another size than it has, or none.
    const QImage picture = pixels(reader.size()) <= PictureLimit::wholePixels ? reader.read() : QImage();
    return pixels(picture.size()) <= PictureLimit::wholePixels &&
                   picture.sizeInBytes() <= PictureLimit::wholeBytes
               ? picture
               : QImage();
}

PictureReader::Facts PictureReader::facts()
{
    QImageReader reader(&m_device, QImageReader::imageFormat(&m_device));
    Facts facts;
    facts.size = reader.size();
    // Nothing more is asked of a header that cannot be read: what answers then was never set.
    if (facts.size.isValid())
        facts.transformation = reader.transformation();
    facts.pictureCount = reader.imageCount();
    return facts;
}

QImage PictureReader::decode(QIODevice &device, const QByteArray &format, QSize &fullSize)
{
    // First of all: once asked, the reader moves the device.
    const QByteArray head = device.peek(headLength);
    QImageReader reader(&device, format);
    reader.setAutoTransform(true);
    const QSize size = reader.size();
    const bool isSized = size.isValid() && !size.isEmpty();
    const bool isReducible = isSized && (format != "png" || isPlainPng(head, reader.imageFormat()));
    const QSize reduced = isReducible ? reducedSize(size, format) : QSize();
    if (isJpeg(format) && !isSized)
        return QImage();
    if (!reduced.isValid()) {
        QImage picture = reader.read();
        fullSize = picture.size();
        return picture;
    }
    reader.setScaledSize(reduced);
    if (isJpeg(format))
        reader.setScaledClipRect(shownPart(size, reduced));
    const bool isTurned = reader.transformation() & QImageIOHandler::TransformationRotate90;
    fullSize = isTurned ? size.transposed() : size;
    return reader.read();
}

QSize PictureReader::reducedSize(const QSize &size, const QByteArray &format)
{
    // Twice the size that is wanted: what is lost below that is seen.
    const QSize needed = ThumbnailCanvas::fitted(size) * 2;
    if (isSvg(format))
        return needed;
    if (format == "png")
        return pixels(size) > pixels(needed) ? needed.boundedTo(size) : QSize();
    const int eighths = isJpeg(format) ? eighthsFor(size, needed) : 0;
    return eighths > 0 ? QSize(size.width() * eighths / 8, size.height() * eighths / 8) : QSize();
}
