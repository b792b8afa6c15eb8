#pragma once

#include <QRect>
#include <QVector>

/** Where another window goes among those of its kind. All in pixels of the desktop. */
namespace WindowPlace {
/**
 * The top left corner for a frame of this size: beside one of the others where none of them is covered and
 * the screen has the room, else a step down and to the right of the last one. Needs at least one other.
 */
QPoint beside(const QSize &frame, const QVector<QRect> &others, const QRect &screen);
} // namespace WindowPlace
