#include "app/window/startsplash.h"

#include <QPainter>

namespace {
constexpr int lineHeight = 4;
constexpr int lineMargin = 16;
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
    const int width = this->width() - 2 * lineMargin;
    const QRect line(lineMargin, height() - 2 * lineMargin, width, lineHeight);
    painter->fillRect(line, QColor(0, 0, 0, 30));
    painter->fillRect(QRect(line.topLeft(), QSize(width * m_percent / 100, lineHeight)),
                      QColor(0, 0, 0, 160));
}
