#pragma once

#include <QElapsedTimer>
#include <QSplashScreen>

/** The picture at the start, with a line that grows while the first database is opened. */
class StartSplash : public QSplashScreen
{
    Q_OBJECT

public:
    explicit StartSplash(const QPixmap &picture);

    /** Paints directly: messages of the base class let events in, while the database is half loaded. */
    void setPercent(int percent);

protected:
    void drawContents(QPainter *painter) override;

private:
    QElapsedTimer m_sincePaint;
    int m_percent = 0;
};
