#include "fileops/pictures/thumbnailcanvas.h"

#include <QPainter>

QSize ThumbnailCanvas::fitted(const QSize &size)
{
    const auto share = [](int length, int whole) {
        return qMax(1, static_cast<int>((static_cast<qint64>(length) * edge + whole / 2) / whole));
    };
    if (size.width() >= size.height())
        return {edge, share(size.height(), size.width())};
    return {share(size.width(), size.height()), edge};
}

QImage ThumbnailCanvas::with(const QImage &picture, const QSize &fullSize)
{
    if (picture.isNull())
        return QImage();
    const QImage scaled = picture.scaled(fitted(fullSize), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    QImage canvas(edge, edge, QImage::Format_ARGB32);
    canvas.fill(QColor(0, 0, 0, 0));
    QPainter painter(&canvas);
    painter.drawImage(QPoint((edge - scaled.width()) / 2, (edge - scaled.height()) / 2), scaled);
    return canvas;
}
