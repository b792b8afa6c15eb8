#include "ui/widgets/greenground.h"

#include <QGuiApplication>
#include <QPalette>

namespace {

const QColor paleGreen(230, 255, 230);
const QColor alternatePaleGreen(218, 246, 218);
const QColor strongGreen(70, 200, 70);

QColor tinted(const QColor &base, double share)
{
    const auto mixed = [share](int ground, int tint) { return qRound(ground + (tint - ground) * share); };
    return {mixed(base.red(), strongGreen.red()), mixed(base.green(), strongGreen.green()),
            mixed(base.blue(), strongGreen.blue())};
}

} // namespace

bool GreenGround::isDark()
{
    // Not that of a view, whose style sheet may have changed it.
    return QGuiApplication::palette().color(QPalette::Base).lightness() < 128;
}

QString GreenGround::styleSheet(const QString &selector)
{
    const QPalette palette = QGuiApplication::palette();
    const QColor &base = palette.color(QPalette::Base);
    const QColor ground = isDark() ? tinted(base, 0.2) : paleGreen;
    const QColor alternate = isDark() ? tinted(base, 0.26) : alternatePaleGreen;
    const QColor text = isDark() ? palette.color(QPalette::Text) : QColor(Qt::black);
    return QStringLiteral("%1 { background-color: %2; color: %3; alternate-background-color: %4; }")
        .arg(selector, ground.name(), text.name(), alternate.name());
}
