#pragma once

#include <QByteArray>

class QWidget;

/** Lets a window fill the screen, on black, and gives it back its place afterwards. Borrows the window. */
class FullScreen
{
public:
    explicit FullScreen(QWidget *window) : m_window(window) {}

    bool isOn() const { return m_isOn; }
    /** The geometry of the window, which it has back after the full screen. */
    QByteArray windowGeometry() const;

    void enter();
    void leave();

private:
    QWidget *m_window;
    bool m_isOn = false;
    bool m_wasMaximized = false;
    QByteArray m_windowGeometry; // while the screen is full
};
