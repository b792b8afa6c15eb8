#pragma once

#include <QObject>
#include <QTimer>

/** The time of a slide show: says when the next picture is due, as long as the settings want each one shown.
 */
class SlideTimer : public QObject
{
    Q_OBJECT

public:
    explicit SlideTimer(QObject *parent);

    bool isActive() const { return m_timer.isActive(); }
    void start();
    void stop() { m_timer.stop(); }
    /** A picture that was stepped to by hand is looked at as long as any other. */
    void restart();

signals:
    void due();

private:
    QTimer m_timer;
};
