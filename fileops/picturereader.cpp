#include "fileops/picturereader.h"

#include "fileops/jpegdevice.h"
#include "fileops/regularfile.h"
#include "fileops/svgtext.h"

#include <QBuffer>
#include <QFile>
#include <QImageReader>
#include <QtEndian>

#include <limits>

namespace {
// Decoded whole, with the copy for scaling beside it: half a gigabyte at the most.
constexpr qint64 maxWholeBytes = 256LL * 1024 * 1024;
// At a reduced size a JPEG of several scans still keeps some 6 bytes a pixel, what comes line by line
// nothing.
constexpr qint64 maxScansPixels = 100LL * 1000 * 1000;
constexpr qint64 maxLinesPixels = 500LL * 1000 * 1000;
constexpr qint64 maxUnsizedBytes = 16LL * 1024 * 1024;
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

/** Formats that hold other pictures, whose sizes their own headers do not tell. */
bool isContainer(const QByteArray &format)
{
    return format == "ico" || format == "cur" || format == "icns" || format == "mng";
}

/** The largest picture among those that have a PNG or MNG header somewhere in the bytes. */
qint64 largestEmbedded(const QByteArray &bytes)
{
    constexpr int nameLength = 4;
    constexpr int headerLength = nameLength + 8;
    qint64 largest = 0;
    for (const char *name : {"IHDR", "MHDR"}) {
        for (int at = bytes.indexOf(name); at >= 0 && at + headerLength <= bytes.size();
             at = bytes.indexOf(name, at + nameLength)) {
            const char *size = bytes.constData() + at + nameLength;
            largest = qMax(largest, static_cast<qint64>(qFromBigEndian<quint32>(size)) *
                                        qFromBigEndian<quint32>(size + 4));
        }
    }
    return largest;
}

/** A GIF tells the size of its first picture, but is drawn on a canvas that may be larger. */
qint64 gifCanvas(const QByteArray &head)
{
    constexpr int sizeAt = 6;
    if (head.size() < sizeAt + 4)
        return 0;
    return static_cast<qint64>(qFromLittleEndian<quint16>(head.constData() + sizeAt)) *
           qFromLittleEndian<quint16>(head.constData() + sizeAt + 2);
}

/** True for the one kind of PNG that is reduced line by line while it is read. */
bool isPlainPng(const QByteArray &head, QImage::Format format)
{
    return format == QImage::Format_RGB32 && head.size() == headLength && head.at(headLength - 1) == 0;
}

/** The most pixels that a file unpacks to beside the size that its format tells; -1 when it is too long. */
qint64 hiddenPixels(QIODevice &device, const QByteArray &format)
{
    if (format == "gif")
        return gifCanvas(device.peek(headLength));
    if (!isContainer(format))
        return 0;
    return device.size() > maxUnsizedBytes ? -1 : largestEmbedded(device.peek(maxUnsizedBytes));
}

qint64 pixelLimit(const QByteArray &format, QImage::Format pixelFormat, bool isReduced, bool isLineByLine)
{
    if (isSvg(format))
        return std::numeric_limits<qint64>::max();
    if (isReduced)
        return isLineByLine ? maxLinesPixels : maxScansPixels;
    // Scaling needs four bytes at least.
    return maxWholeBytes / qMax(4, QImage::toPixelFormat(pixelFormat).bitsPerPixel() / 8);
}
} // namespace

QSize PictureReader::fitted(const QSize &size, int edge)
{
    const auto share = [edge](int length, int whole) {
        return qMax(1, static_cast<int>((static_cast<qint64>(length) * edge + whole / 2) / whole));
    };
    if (size.width() >= size.height())
        return {edge, share(size.height(), size.width())};
    return {share(size.width(), size.height()), edge};
}

QImage PictureReader::read(const QString &path)
{
    RegularFile file;
    QFile device;
    // Its closing would be that of a second descriptor of the file.
    if (!file.open(path) ||
        !device.open(file.descriptor(), QIODevice::ReadOnly, QFileDevice::DontCloseHandle))
        return QImage();
    const QByteArray format = QImageReader::imageFormat(&device);
    if (isJpeg(format)) {
        JpegDevice jpeg(device);
        const bool isOneScan = jpeg.isOneScan();
        const QImage picture = decode(jpeg, format, isOneScan);
        return jpeg.isCut() ? QImage() : picture;
    }
    if (!isSvg(format))
        return decode(device, format, true);
    QByteArray text = SvgText::read(device);
    QBuffer buffer(&text);
    return !text.isEmpty() && buffer.open(QIODevice::ReadOnly) ? decode(buffer, "svg", true) : QImage();
}

QImage PictureReader::readWhole(const QByteArray &bytes, qint64 mostBytes)
{
    constexpr qint64 usualPixel = 4;
    QBuffer device;
    device.setData(bytes);
    if (!device.open(QIODevice::ReadOnly))
        return QImage();
    const QByteArray format = QImageReader::imageFormat(&device);
    if (isSvg(format)) {
        const QByteArray text = SvgText::read(device);
        device.close();
        device.setData(text);
        if (text.isEmpty() || !device.open(QIODevice::ReadOnly))
            return QImage();
    }
    const qint64 hidden = hiddenPixels(device, format);
    QImageReader reader(&device, isSvg(format) ? QByteArray("svg") : format);
    reader.setAutoTransform(true);
    const QSize size = reader.size();
    const bool isSized = size.isValid() && !size.isEmpty();
    const qint64 bytesOfPixel =
        qMax(usualPixel, qint64(QImage::toPixelFormat(reader.imageFormat()).bitsPerPixel() / 8));
    if (hidden < 0 || qMax(hidden, isSized ? pixels(size) : 0) > mostBytes / bytesOfPixel ||
        (!isSized && bytes.size() > maxUnsizedBytes))
        return QImage();
    return reader.read();
}

QImage PictureReader::decode(QIODevice &device, const QByteArray &format, bool isLineByLine)
{
    // First of all: once asked, the reader moves the device.
    const QByteArray head = device.peek(headLength);
    const qint64 hidden = hiddenPixels(device, format);
    QImageReader reader(&device, format);
    reader.setAutoTransform(true);
    const QSize size = reader.size();
    const bool isSized = size.isValid() && !size.isEmpty();
    const QImage::Format pixelFormat = reader.imageFormat();
    const bool isTurned = reader.transformation() & QImageIOHandler::TransformationRotate90;
    const bool isReducible = isSized && (format != "png" || isPlainPng(head, pixelFormat));
    const QSize reduced = isReducible ? reducedSize(size, format) : QSize();
    const qint64 limit = pixelLimit(format, pixelFormat, reduced.isValid(), isLineByLine);
    if (hidden < 0 || qMax(hidden, isSized ? pixels(size) : 0) > limit ||
        (!isSized && device.size() > maxUnsizedBytes))
        return QImage();
    if (!reduced.isValid()) {
        QImage picture = reader.read();
        m_fullSize = picture.size();
        return picture;
    }
    reader.setScaledSize(reduced);
    if (isJpeg(format))
        reader.setScaledClipRect(shownPart(size, reduced));
    m_fullSize = isTurned ? size.transposed() : size;
    return reader.read();
}

QSize PictureReader::reducedSize(const QSize &size, const QByteArray &format) const
{
    // Twice the size that is wanted: what is lost below that is seen.
    const QSize needed = fitted(size, m_edge) * 2;
    if (isSvg(format))
        return needed;
    if (format == "png")
        return pixels(size) > pixels(needed) ? needed.boundedTo(size) : QSize();
    const int eighths = isJpeg(format) ? eighthsFor(size, needed) : 0;
    return eighths > 0 ? QSize(size.width() * eighths / 8, size.height() * eighths / 8) : QSize();
}
