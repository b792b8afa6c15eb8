#include "fileops/thumbnailmaker.h"

#include "db/abstractqueryconstructor.h"
#include "fileops/fileoperationqueries.h"

#include <QBuffer>
#include <QDebug>
#include <QFileInfo>
#include <QImageReader>
#include <QPainter>
#include <QSet>

namespace {
constexpr int edge = 128;
// What is decoded whole may take this many pixels, some 256 MiB; what is read at a reduced size costs time
// only.
constexpr qint64 maxWholePixels = 64LL * 1024 * 1024;
constexpr qint64 maxScaledPixels = 512LL * 1024 * 1024;
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

/** Reads a picture, a large one at twice the size of its thumbnail where its format can do that. */
QImage readPicture(const QString &path)
{
    // A pipe would be waited for without end.
    if (!QFileInfo(path).isFile())
        return QImage();
    QImageReader reader(path);
    reader.setDecideFormatFromContent(true);
    const QSize size = reader.size();
    const bool isScaling = reader.supportsOption(QImageIOHandler::ScaledSize);
    if (size.isValid() && !size.isEmpty()) {
        if (pixels(size) > (isScaling ? maxScaledPixels : maxWholePixels))
            return QImage();
        const QSize reduced = fitted(size) * 2;
        if (isScaling && reduced.width() < size.width() && reduced.height() < size.height())
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
    if (canvas.isNull())
        return false;
    QByteArray png;
    QBuffer buffer(&png);
    if (!buffer.open(QIODevice::WriteOnly) || !canvas.save(&buffer, "PNG"))
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
        qDebug() << "Failed load image data:" << path;
        return QImage();
    }
    const QImage scaled =
        picture.scaled(fitted(picture.size()), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    QImage canvas(edge, edge, QImage::Format_ARGB32);
    canvas.fill(QColor(0, 0, 0, 0));
    QPainter painter(&canvas);
    painter.drawImage(QPointF((edge - scaled.width()) / 2, (edge - scaled.height()) / 2), scaled);
    return canvas;
}
