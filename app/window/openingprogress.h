#pragma once

#include "app/messages/waitcursor.h"

#include <QElapsedTimer>
#include <QObject>

class QStatusBar;

/**
 * Shows for its lifetime that a database is being opened: the pointer waits at once, and after a moment a
 * text in the status bar moves. It is painted directly, as an event loop would let the user and waiting
 * signals into a database that is half loaded. The price: a window manager that asks meanwhile gets no
 * answer.
 */
class OpeningProgress : public QObject
{
    Q_OBJECT

public:
    explicit OpeningProgress(QStatusBar *statusBar);
    ~OpeningProgress() override;

    void setPercent(int percent);

private:
    QStatusBar *m_statusBar;
    WaitCursor m_cursor;
    QElapsedTimer m_clock;
    qint64 m_nextPaint;
    QString m_text;
};
