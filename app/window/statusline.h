#pragma once

#include "db/manager/newscount.h"

#include <QObject>
#include <QString>
#include <QTimer>

class QLabel;
class QStatusBar;

/** The text of the status bar: what is selected, and for a moment what others have changed. Owned by the
 * window's parts. */
class StatusLine : public QObject
{
    Q_OBJECT

public:
    explicit StatusLine(QStatusBar *bar);

    /** After what else has a place in the status bar. */
    void takePlace();

    static QString textOf(const NewsCount &count);

public slots:
    void setText(const QString &text);
    /** Of what is selected or shown, at the right end. */
    void setSizes(const QString &text);
    void tellNews(const NewsCount &count);
    /** What has just been done, for some seconds, to the right of the text. */
    void tell(const QString &text);

private:
    QStatusBar *m_bar;
    QString m_text;
    QString m_news;
    QLabel *m_happened;
    QLabel *m_sizes;
    QTimer m_happenedTime;
};
