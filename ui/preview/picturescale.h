#pragma once

#include <QSize>

/**
 * How large a picture is shown. A scale of 1 shows a pixel of the picture as one of the screen; sizes are
 * pixels of pictures and of the screen.
 */
namespace PictureScale {
/** The largest of 1, 1/2, 1/4 ... at which the picture fits. */
double fitting(const QSize &picture, const QSize &room);
/** The largest scale up to 1 at which the picture fits. */
double filling(const QSize &picture, const QSize &room);
/**
 * The scale after this many steps of zooming, more or fewer than whole ones. It stays in bounds, and stops at
 * 1 on its way past it.
 */
double zoomed(double scale, double steps, const QSize &picture);
/** The size at a scale, at least one pixel each way. */
QSize sizeAt(const QSize &picture, double scale);
} // namespace PictureScale
