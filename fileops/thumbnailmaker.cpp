#include "fileops/thumbnailmaker.h"

#include "db/abstractqueryconstructor.h"
#include "fileops/fileoperationqueries.h"

#include <QBuffer>
#include <QDebug>
#include <QFileInfo>
#include <QImageReader>
#include <QPainter>
#include <QSet>

#include <limits>

namespace {
constexpr int edge = 128;
constexpr qint64 millionPixels = 1000LL * 1000;
// A picture that is decoded whole takes up to 16 bytes a pixel, the copy for scaling included.
constexpr qint64 maxWholePixels = 64 * millionPixels;
// At a reduced size a progressive JPEG still keeps some 6 bytes a pixel, a plain PNG nothing.
constexpr qint64 maxJpegPixels = 160 * millionPixels;
constexpr qint64 maxPlainPngPixels = 500 * millionPixels;
constexpr qint64 maxUnsizedBytes = 16LL * 1024 * 1024;

int roundedShare(int length, int whole)
{
    return qMax(1, static_cast<int>((static_cast<qint64>(length) * edge + whole / 2) / whole));
}

/** The size within the canvas, to the nearest pixel. */
QSize fitted(const QSize &size)
{
    if (size.width() >= size.height())
        return {edge, roundedShare(size.height(), size.width())};
    return {roundedShare(size.width(), size.height()), edge};
}

qint64 pixels(const QSize &size)
{
    return static_cast<qint64>(size.width()) * size.height();
}

/** True for the one kind of PNG that is reduced line by line while it is read. */
bool isPlainPng(const QImageReader &reader)
{
    constexpr int interlaceAt = 28;
    const QImage::Format format = reader.imageFormat();
    if (format != QImage::Format_RGB32 && format != QImage::Format_ARGB32)
        return false;
    QFile file(reader.fileName());
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray head = file.read(interlaceAt + 1);
    return head.size() > interlaceAt && head.at(interlaceAt) == 0;
}

qint64 pixelLimit(const QImageReader &reader)
{
    const QByteArray format = reader.format();
    if (format == "svg" || format == "svgz")
        return std::numeric_limits<qint64>::max();
    if (format == "jpeg" || format == "jpg")
        return maxJpegPixels;
    return format == "png" && isPlainPng(reader) ? maxPlainPngPixels : maxWholePixels;
}

/** Reads a picture, a large one at twice the size of its thumbnail where its format can do that. */
QImage readPicture(const QString &path)
{
    // A pipe would be waited for without end.
    if (!QFileInfo(path).isFile())
        return QImage();
    QImageReader reader(path);
    reader.setDecideFormatFromContent(true);
    const QSize size = reader.size();
    if (size.isValid() && !size.isEmpty()) {
        if (pixels(size) > pixelLimit(reader))
            return QImage();
        const QSize reduced = (fitted(size) * 2).boundedTo(size);
        if (reduced != size && reader.supportsOption(QImageIOHandler::ScaledSize))
            reader.setScaledSize(reduced);
    } else if (QFileInfo(path).size() > maxUnsizedBytes) {
        return QImage();
    }
    return reader.read();
}
} // namespace

bool ThumbnailMaker::makeThumbnail(const QString &path, qint64 thumbnailId, bool isNew)
{
    const QImage canvas = thumbnailOf(path);
    return !canvas.isNull() && store(canvas, thumbnailId, isNew);
}

bool ThumbnailMaker::store(const QImage &canvas, qint64 thumbnailId, bool isNew)
{
    const QByteArray png = encoded(canvas);
    if (png.isEmpty())
        return false;

    const AbstractQueryConstructor &dialect = *m_queries.constructor();
    const QString place = QStringLiteral(":FILE");
    const QString table = QStringLiteral("thumbnails");
    const QString id = QString::number(thumbnailId);
    QString statement;
    if (isNew)
        statement = dialect.insertQuery({QStringLiteral("thumbnail_id"), QStringLiteral("thumbnail")}, table,
                                        {{id, place}});
    else
        statement = dialect.updateQuery({QStringLiteral("thumbnail")}, table, {place}) +
                    dialect.whereClause(QStringLiteral("thumbnail_id=") + id);
    statement.replace(QLatin1String("':FILE'"), place);
    return m_queries.runAsyncWithBlob(statement + dialect.statementEnd(), png, place);
}

bool ThumbnailMaker::isImageName(const QString &path)
{
    static const QSet<QString> endings = [] {
        QSet<QString> names = {QStringLiteral("jpeg")};
        const QList<QByteArray> formats = QImageReader::supportedImageFormats();
        for (const QByteArray &format : formats)
            names.insert(QString::fromLatin1(format).toLower());
        return names;
    }();
    const int dot = path.lastIndexOf(QLatin1Char('.'));
    return dot >= 0 && endings.contains(path.mid(dot + 1).toLower());
}

QImage ThumbnailMaker::thumbnailOf(const QString &path)
{
    const QImage picture = readPicture(path);
    if (picture.isNull()) {
        qDebug("Failed load image data: %s", qUtf8Printable(path));
        return QImage();
    }
    return canvasOf(picture);
}

QImage ThumbnailMaker::canvasOf(const QImage &picture)
{
    if (picture.isNull())
        return QImage();
    const QImage scaled =
        picture.scaled(fitted(picture.size()), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    QImage canvas(edge, edge, QImage::Format_ARGB32);
    canvas.fill(QColor(0, 0, 0, 0));
    QPainter painter(&canvas);
    painter.drawImage(QPoint((edge - scaled.width()) / 2, (edge - scaled.height()) / 2), scaled);
    return canvas;
}

QByteArray ThumbnailMaker::encoded(const QImage &canvas)
{
    QByteArray png;
    QBuffer buffer(&png);
    if (!buffer.open(QIODevice::WriteOnly) || !canvas.save(&buffer, "PNG"))
        return QByteArray();
    return png;
}
