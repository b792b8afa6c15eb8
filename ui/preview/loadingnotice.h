#pragma once

#include <QFrame>
#include <QTimer>

class QLabel;

/**
 * Says in the middle of its parent that a picture is on its way, with a button that gives up waiting. It
 * shows itself only when that takes a moment. GUI thread.
 */
class LoadingNotice : public QFrame
{
    Q_OBJECT

public:
    explicit LoadingNotice(QWidget *parent);

    /** The picture of this name is awaited from now on. */
    void begin(const QString &name);
    void end();

    bool eventFilter(QObject *watched, QEvent *event) override;

signals:
    void appeared();
    void canceled();

private:
    void appear();
    void place();

    QLabel *m_text;
    QTimer m_patience;
};
