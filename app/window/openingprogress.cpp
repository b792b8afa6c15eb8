#include "app/window/openingprogress.h"

#include <QStatusBar>

namespace {
// Milliseconds. A short opening shows nothing that would only flicker.
constexpr qint64 firstPaint = 200;
constexpr qint64 betweenPaints = 50;
} // namespace

OpeningProgress::OpeningProgress(QStatusBar *statusBar) : m_statusBar(statusBar), m_nextPaint(firstPaint)
{
    m_clock.start();
}

OpeningProgress::~OpeningProgress()
{
    if (!m_text.isEmpty() && m_statusBar->currentMessage() == m_text)
        m_statusBar->clearMessage();
}

void OpeningProgress::setPercent(int percent)
{
    if (!m_statusBar->isVisible() || m_clock.elapsed() < m_nextPaint)
        return;
    m_nextPaint = m_clock.elapsed() + betweenPaints;
    const bool isFirst = m_text.isEmpty();
    m_text = tr("Opening database... %1 %").arg(percent);
    m_statusBar->showMessage(m_text);
    // The first time with what a closed menu or dialog has left behind in the window.
    (isFirst ? m_statusBar->window() : m_statusBar)->repaint();
}
