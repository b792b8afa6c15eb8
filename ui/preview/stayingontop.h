#pragma once

#include <QObject>
#include <QPointer>

class QWidget;

/**
 * Keeps a previewer above other windows when the user wants that. Where the desktop has no such windows, as
 * on Wayland, it stays above the window that it was opened from. Belongs to the previewer; GUI thread.
 */
class StayingOnTop : public QObject
{
    Q_OBJECT

public:
    /** Before the window is placed, as another flag makes another window of it. */
    explicit StayingOnTop(QWidget *window);

    /** The window that it was opened from, which is borrowed. */
    void setOrigin(QWidget *origin) { m_origin = origin; }
    void readSettings();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QWidget *m_window;
    QPointer<QWidget> m_origin;
};
