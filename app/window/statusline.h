#pragma once

#include "db/manager/newscount.h"

#include <QObject>
#include <QString>

class QStatusBar;

/** The text of the status bar: what is selected, and for a moment what others have changed. Owned by the
 * window's parts. */
class StatusLine : public QObject
{
    Q_OBJECT

public:
    explicit StatusLine(QStatusBar *bar);

    static QString textOf(const NewsCount &count);

public slots:
    void setText(const QString &text);
    void tellNews(const NewsCount &count);

private:
    QStatusBar *m_bar;
    QString m_text;
    QString m_news;
};
