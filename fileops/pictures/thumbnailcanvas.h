#pragma once

#include <QImage>

/** The form of a thumbnail: a picture in the middle of a small transparent square. Any thread. */
namespace ThumbnailCanvas {
constexpr int edge = 128;

/** The size of the picture on the canvas, to the nearest pixel; small pictures grow. */
QSize fitted(const QSize &size);
/** The canvas with a picture, which may have been read at a reduced size of the full one. */
QImage with(const QImage &picture, const QSize &fullSize);
} // namespace ThumbnailCanvas
