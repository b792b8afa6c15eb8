#include "fileops/thumbnailmaker.h"

#include "db/abstractqueryconstructor.h"
#include "fileops/fileoperationqueries.h"
#include "fileops/picturereader.h"

#include <QBuffer>
#include <QDebug>
#include <QImageReader>
#include <QPainter>
#include <QSet>

namespace {
constexpr int edge = 128;

/** The picture, scaled to its place, in the middle of a transparent canvas. */
QImage canvasWith(const QImage &picture, const QSize &size)
{
    const QImage scaled = picture.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    QImage canvas(edge, edge, QImage::Format_ARGB32);
    canvas.fill(QColor(0, 0, 0, 0));
    QPainter painter(&canvas);
    painter.drawImage(QPoint((edge - scaled.width()) / 2, (edge - scaled.height()) / 2), scaled);
    return canvas;
}
} // namespace

bool ThumbnailMaker::makeThumbnail(const QString &path, qint64 thumbnailId, bool isNew)
{
    const QImage canvas = thumbnailOf(path);
    return !canvas.isNull() && store(canvas, thumbnailId, isNew);
}

bool ThumbnailMaker::store(const QImage &canvas, qint64 thumbnailId, bool isNew)
{
    return store(encoded(canvas), thumbnailId, isNew);
}

bool ThumbnailMaker::store(const QByteArray &png, qint64 thumbnailId, bool isNew)
{
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
    PictureReader reader(edge);
    const QImage picture = reader.read(path);
    if (picture.isNull()) {
        qDebug("Failed load image data: %s", qUtf8Printable(path));
        return QImage();
    }
    return canvasWith(picture, PictureReader::fitted(reader.fullSize(), edge));
}

QImage ThumbnailMaker::canvasOf(const QImage &picture)
{
    return picture.isNull() ? QImage() : canvasWith(picture, PictureReader::fitted(picture.size(), edge));
}

QByteArray ThumbnailMaker::encoded(const QImage &canvas)
{
    QByteArray png;
    QBuffer buffer(&png);
    if (!buffer.open(QIODevice::WriteOnly) || !canvas.save(&buffer, "PNG"))
        return QByteArray();
    return png;
}
