#pragma once

class QEvent;
class QMainWindow;
class UpdateBar;

/** Where window, docks and bars were the last time. Part of the window, which it borrows; GUI thread. */
class WindowLayout
{
public:
    /** The row of the updates is none of the user's. */
    WindowLayout(QMainWindow *window, UpdateBar *updates) : m_window(window), m_updates(updates) {}

    void restore();
    /** After the window has handled an event of its own. */
    void follow(const QEvent &event);
    /** For a window that ends without having been closed. */
    void storeAtTheEnd();

private:
    void store();

    QMainWindow *m_window;
    UpdateBar *m_updates;
    bool m_isStored = false;
};
