#include "models/contents/filepictures.h"

#include "core/records/filekind.h"

#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QMap>
#include <QPainter>

namespace {

constexpr int overlayFraction = 4;

QImage pictureFrom(const QString &name)
{
    const QString sharp = QStringLiteral(":/icons/%1@2x.png").arg(name);
    if (qGuiApp->devicePixelRatio() > 1.0 && QFile::exists(sharp)) {
        QImage picture(sharp, "PNG");
        picture.setDevicePixelRatio(2.0);
        return picture;
    }
    return QImage(QStringLiteral(":/icons/%1.png").arg(name), "PNG");
}

const QMap<int, QImage> &overlayPictures()
{
    static const QMap<int, QImage> pictures{
        {FilePictures::MissingOverlay, pictureFrom(QStringLiteral("missing"))},
        {FilePictures::LinkOverlay, pictureFrom(QStringLiteral("linkIcon"))},
        {FilePictures::HyperlinkOverlay, pictureFrom(QStringLiteral("hyperlink"))},
    };
    return pictures;
}

const QMap<int, QImage> &kindPictures()
{
    static const QMap<int, QImage> pictures{
        {0, pictureFrom(QStringLiteral("paper"))},
        {1, pictureFrom(QStringLiteral("pdf"))},
        {2, pictureFrom(QStringLiteral("word"))},
        {3, pictureFrom(QStringLiteral("excel"))},
        {4, pictureFrom(QStringLiteral("music"))},
        {5, pictureFrom(QStringLiteral("video"))},
        {FilePictures::thumbnailKind, pictureFrom(QStringLiteral("loadingthumbnail"))},
        {7, pictureFrom(QStringLiteral("paper"))},
    };
    return pictures;
}

// All that decides what is drawn over a picture, as one number to keep pictures by.
int overlayKey(bool isMissing, int internal)
{
    const int link = internal == FileKind::external ? 1 : internal == FileKind::hyperlink ? 2 : 0;
    return link * 2 + (isMissing ? 1 : 0);
}

void drawOverlay(QPainter &painter, const QSizeF &pictureSize, int overlay, bool isAtTop)
{
    const QImage image = overlayPictures().value(overlay);
    if (image.isNull())
        return;
    const qreal height = pictureSize.height() / overlayFraction;
    const qreal width = height * image.width() / image.height();
    const QPointF corner =
        isAtTop ? QPointF(pictureSize.width() - width, 0) : QPointF(0, pictureSize.height() - height);
    painter.drawImage(QRectF(corner, QSizeF(width, height)), image);
}

QPixmap composed(const QImage &base, bool isMissing, int internal)
{
    if (base.isNull())
        return {};
    QPixmap picture = QPixmap::fromImage(base);
    if (overlayKey(isMissing, internal) == 0)
        return picture;
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    const QSizeF size = QSizeF(picture.size()) / picture.devicePixelRatioF();
    if (isMissing)
        drawOverlay(painter, size, FilePictures::MissingOverlay, true);
    if (internal == FileKind::external)
        drawOverlay(painter, size, FilePictures::LinkOverlay, false);
    else if (internal == FileKind::hyperlink)
        drawOverlay(painter, size, FilePictures::HyperlinkOverlay, false);
    return picture;
}

} // namespace

QPixmap FilePictures::ofKind(int iconKind, bool isMissing, int internal)
{
    constexpr int overlayKeys = 6;
    const int key = iconKind * overlayKeys + overlayKey(isMissing, internal);
    const auto found = m_byKind.constFind(key);
    if (found != m_byKind.constEnd())
        return *found;
    const QPixmap picture = composed(kindPictures().value(iconKind), isMissing, internal);
    m_byKind.insert(key, picture);
    return picture;
}

QPixmap FilePictures::ofThumbnail(qint64 fileId, const QImage *thumbnail, bool isMissing, int internal)
{
    if (!thumbnail || thumbnail->isNull())
        return ofKind(thumbnailKind, isMissing, internal);
    const int overlays = overlayKey(isMissing, internal);
    const Composed *known = m_byFile.object(fileId);
    if (known && known->thumbnailKey == thumbnail->cacheKey() && known->overlays == overlays)
        return known->picture;
    const QPixmap picture = composed(*thumbnail, isMissing, internal);
    m_byFile.insert(fileId, new Composed{thumbnail->cacheKey(), overlays, picture});
    return picture;
}

void FilePictures::clear()
{
    m_byFile.clear();
}
