#include "fileops/pictures/imagecodec.h"

#include "fileops/pictures/jpegnotes.h"
#include "fileops/pictures/picturepool.h"

#include <QBuffer>
#include <QColorSpace>
#include <QImageWriter>
#include <QTransform>

namespace {
constexpr int bestQuality = 100;

bool isJpeg(const QByteArray &format)
{
    return format == "jpg" || format == "jpeg";
}

/** As it is shown: colours under full transparency do not count. */
QImage asShown(const QImage &picture)
{
    return picture.convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

bool looksLike(const QImage &one, const QImage &other)
{
    if (one.size() != other.size())
        return false;
    return one.format() == other.format() && one.format() == QImage::Format_RGB32
               ? one == other
               : asShown(one) == asShown(other);
}

bool isTransparentSomewhere(const QImage &picture)
{
    if (!picture.hasAlphaChannel())
        return false;
    const QImage pixels = picture.convertToFormat(QImage::Format_ARGB32);
    for (int y = 0; y < pixels.height(); ++y) {
        const auto *line = reinterpret_cast<const QRgb *>(pixels.constScanLine(y));
        for (int x = 0; x < pixels.width(); ++x) {
            if (qAlpha(line[x]) != 255)
                return true;
        }
    }
    return false;
}

void copyTexts(const QImage &from, QImage &to)
{
    const QStringList keys = from.textKeys();
    for (const QString &key : keys)
        to.setText(key, from.text(key));
}

void copyMetadata(const QImage &from, QImage &to, bool isOnItsSide)
{
    to.setDotsPerMeterX(isOnItsSide ? from.dotsPerMeterY() : from.dotsPerMeterX());
    to.setDotsPerMeterY(isOnItsSide ? from.dotsPerMeterX() : from.dotsPerMeterY());
    to.setColorSpace(from.colorSpace());
    copyTexts(from, to);
}

/** The reader takes an animated PNG for its first frame alone. */
bool isAnimatedPng(const QByteArray &bytes)
{
    const int control = bytes.indexOf("acTL");
    return bytes.startsWith("\x89PNG") && control > 0 && control < bytes.indexOf("IDAT");
}
} // namespace

QImage ImageCodec::decoded(const QByteArray &bytes)
{
    return PicturePool::instance().read({PictureUse::Whole, {}, bytes}).image;
}

bool ImageCodec::hasSeveralPictures(const QByteArray &bytes)
{
    const PictureAnswer facts = PicturePool::instance().read({PictureUse::Facts, {}, bytes});
    return facts.state != PictureAnswer::Read || facts.pictureCount > 1 || isAnimatedPng(bytes) ||
           JpegNotes::hasFurtherPictures(bytes);
}

QByteArray ImageCodec::encoded(const QImage &picture, const QByteArray &format)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    if (picture.isNull() || !QImageWriter::supportedImageFormats().contains(format) ||
        (isJpeg(format) && isTransparentSomewhere(picture)) || !buffer.open(QIODevice::WriteOnly))
        return QByteArray();
    QImageWriter writer(&buffer, format);
    // A PNG of this quality would not be compressed; a WebP is written without loss by it.
    if (isJpeg(format) || format == "webp")
        writer.setQuality(bestQuality);
    if (format == "tif" || format == "tiff")
        writer.setCompression(1); // LZW, without loss
    if (!writer.write(picture))
        return QByteArray();
    buffer.close();
    const QImage readBack = decoded(bytes);
    const bool isGood = isJpeg(format) ? readBack.size() == picture.size() : looksLike(readBack, picture);
    return isGood ? bytes : QByteArray();
}

QByteArray ImageCodec::rewritten(const QByteArray &oldBytes, const QImage &picture, const QByteArray &format)
{
    QByteArray bytes = hasSeveralPictures(oldBytes) ? QByteArray() : encoded(picture, format);
    if (bytes.isEmpty() || !isJpeg(format))
        return bytes;
    const QByteArray withNotes = JpegNotes::carriedOver(oldBytes, bytes, picture.size());
    const PictureAnswer facts = PicturePool::instance().read({PictureUse::Facts, {}, withNotes});
    // Notes that would turn it once more are not worth it.
    const bool isUpright =
        facts.state == PictureAnswer::Read && facts.transformation == QImageIOHandler::TransformationNone;
    return isUpright && facts.size == picture.size() ? withNotes : bytes;
}

QImage ImageCodec::turnedLike(const QImage &original, const QImage &picture)
{
    constexpr int quarter = 90;
    // The turn is found by trying: what was done to the picture is not told, only what came of it.
    for (int quarters = 0; quarters < 4; ++quarters) {
        const bool isOnItsSide = quarters % 2 != 0;
        if (picture.size() != (isOnItsSide ? original.size().transposed() : original.size()))
            continue;
        if (quarters == 0 && looksLike(original, picture))
            return original;
        QImage turned = original.transformed(QTransform().rotate(quarters * quarter));
        if (!looksLike(turned, picture))
            continue;
        copyMetadata(original, turned, isOnItsSide);
        return turned;
    }
    QImage other = picture;
    // It was changed by more than a turn. What the screen has added, colours or alpha, is not stored.
    if (original.format() == QImage::Format_Grayscale8 && other.isGrayscale())
        other = other.convertToFormat(QImage::Format_Grayscale8);
    else if (!original.hasAlphaChannel() && other.hasAlphaChannel())
        other = other.convertToFormat(QImage::Format_RGB32);
    copyMetadata(original, other, picture.size() != original.size());
    return other;
}
