#pragma once

class QSize;
class QWidget;

/** How large a window is at first: never larger than the screen. GUI thread. */
namespace FirstSize {
/** As large as what it holds needs; the toolkit itself would squeeze it into two thirds of the screen. */
void byContents(QWidget *window);
/** So many pixels, and more with a large font. */
void byFont(QWidget *window, const QSize &pixels);
} // namespace FirstSize
