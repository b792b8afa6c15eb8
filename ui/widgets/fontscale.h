#pragma once

class QSize;
class QWidget;

/**
 * Lengths that hold text are given in pixels at a font of nine points, which is the usual one. A larger font
 * gets more room by these functions, a smaller one no less. GUI thread.
 */
namespace FontScale {
int byFont(int pixels, const QWidget *widget);
QSize byFont(const QSize &pixels, const QWidget *widget);
} // namespace FontScale
