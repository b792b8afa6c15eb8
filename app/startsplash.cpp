#include "app/startsplash.h"

#include <QPainter>

namespace {
constexpr int lineHeight = 4;
constexpr qint64 betweenPaints = 50; // milliseconds
} // namespace

StartSplash::StartSplash(const QPixmap &picture) : QSplashScreen(picture)
{
    m_sincePaint.start();
}

void StartSplash::setPercent(int percent)
{
    if (m_sincePaint.elapsed() < betweenPaints)
        return;
    m_sincePaint.start();
    m_percent = percent;
    QWidget::repaint();
}

void StartSplash::drawContents(QPainter *painter)
{
    QSplashScreen::drawContents(painter);
    const QRect line(0, height() - lineHeight, width() * m_percent / 100, lineHeight);
    painter->fillRect(line, palette().color(QPalette::Highlight));
}
