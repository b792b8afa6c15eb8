#pragma once

#include <QElapsedTimer>
#include <QObject>

class Collection;
class QStatusBar;

/**
 * Tells in the status bar how far the reading of all records has come that replaces those of an open
 * database. Belongs to the collection.
 */
class ReloadProgress : public QObject
{
    Q_OBJECT

public:
    ReloadProgress(Collection *collection, QStatusBar *statusBar);

private:
    void begin();
    void setPercent(int percent);
    void end();

    QStatusBar *m_statusBar;
    QElapsedTimer m_clock;
    QString m_text;
    bool m_isReloading = false;
};
