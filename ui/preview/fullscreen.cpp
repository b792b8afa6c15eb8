#include "ui/preview/fullscreen.h"

#include <QWidget>

QByteArray FullScreen::windowGeometry() const
{
    return m_isOn ? m_windowGeometry : m_window->saveGeometry();
}

void FullScreen::enter()
{
    m_windowGeometry = m_window->saveGeometry();
    m_wasMaximized = m_window->isMaximized();
    m_isOn = true;
    QPalette colours = m_window->palette();
    colours.setColor(QPalette::Window, Qt::black);
    m_window->setPalette(colours);
    m_window->showFullScreen();
}

void FullScreen::leave()
{
    m_isOn = false;
    m_window->setPalette(QPalette());
    m_wasMaximized ? m_window->showMaximized() : m_window->showNormal();
}
