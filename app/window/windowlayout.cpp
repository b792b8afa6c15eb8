#include "app/window/windowlayout.h"

#include "app/settings/windowsettings.h"
#include "app/window/updatebar.h"

#include <QEvent>
#include <QMainWindow>
#include <QScreen>

void WindowLayout::restore()
{
    m_window->restoreState(WindowSettings::layout(WindowSettings::mainWindowState));
    if (!m_window->restoreGeometry(WindowSettings::layout(WindowSettings::mainWindowGeometry)))
        m_window->resize(m_window->size().expandedTo(m_window->screen()->availableSize() * 2 / 3));
}

void WindowLayout::follow(const QEvent &event)
{
    // The last moment: with the window its docks that float are hidden, and would stay so.
    if (event.type() == QEvent::Close && event.isAccepted())
        store();
    else if (event.type() == QEvent::Show)
        m_isStored = false;
}

void WindowLayout::storeAtTheEnd()
{
    if (!m_isStored)
        store();
}

void WindowLayout::store()
{
    m_updates->giveRowBack();
    WindowSettings::setLayout(WindowSettings::mainWindowState, m_window->saveState());
    WindowSettings::setLayout(WindowSettings::mainWindowGeometry, m_window->saveGeometry());
    m_isStored = true;
}
