#include "ui/preview/windowplace.h"

#include <algorithm>

namespace {

constexpr int step = 32;

bool isFree(const QRect &place, const QVector<QRect> &others, const QRect &screen)
{
    return screen.contains(place) &&
           std::none_of(others.cbegin(), others.cend(),
                        [&place](const QRect &other) { return other.intersects(place); });
}

} // namespace

namespace WindowPlace {

QPoint beside(const QSize &frame, const QVector<QRect> &others, const QRect &screen)
{
    for (const QRect &other : others) {
        const QPoint corner = other.topLeft();
        for (const QPoint &way : {QPoint(other.width(), 0), QPoint(-frame.width(), 0),
                                  QPoint(0, other.height()), QPoint(0, -frame.height())}) {
            if (isFree({corner + way, frame}, others, screen))
                return corner + way;
        }
    }
    const QPoint next = others.last().topLeft() + QPoint(step, step);
    return screen.contains(QRect(next, frame)) ? next : screen.topLeft();
}

} // namespace WindowPlace
