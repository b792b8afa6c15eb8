#include "ui/preview/picturescale.h"

#include <cmath>

namespace {

constexpr double stepFactor = 1.25;
constexpr double largest = 32;
// No picture is made smaller than this by zooming.
constexpr double fewestPixels = 16;

} // namespace

namespace PictureScale {

double fitting(const QSize &picture, const QSize &room)
{
    double scale = 1;
    if (picture.isEmpty())
        return scale;
    for (;;) {
        const QSize size = sizeAt(picture, scale);
        const bool fits = size.width() <= room.width() && size.height() <= room.height();
        if (fits || (size.width() == 1 && size.height() == 1))
            return scale;
        scale /= 2;
    }
}

double filling(const QSize &picture, const QSize &room)
{
    if (picture.isEmpty() || room.isEmpty())
        return 1;
    return qMin(1.0, qMin(double(room.width()) / picture.width(), double(room.height()) / picture.height()));
}

double zoomed(double scale, double steps, const QSize &picture)
{
    const double longest = qMax(1, qMax(picture.width(), picture.height()));
    // A window may be so small that the picture was fitted below the bound.
    const double smallest = qMin(scale, qMin(1.0, fewestPixels / longest));
    const double wanted = qBound(smallest, scale * std::pow(stepFactor, steps), largest);
    const bool passesOne = (scale < 1 && wanted > 1) || (scale > 1 && wanted < 1);
    return passesOne ? 1 : wanted;
}

QSize sizeAt(const QSize &picture, double scale)
{
    return {qMax(1, qRound(picture.width() * scale)), qMax(1, qRound(picture.height() * scale))};
}

} // namespace PictureScale
