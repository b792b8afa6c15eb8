#pragma once

#include <QObject>
#include <QPointer>

class FileDragData;
class QDrag;

/**
 * Stands by while a drag runs. When it is about to fall on another program, the copies of files from inside
 * the database are made first: many programs use the URLs that they saw while the pointer came by, and ask no
 * more. Made on the stack around the drag. GUI thread.
 */
class DropWatch : public QObject
{
    Q_OBJECT

public:
    /** Does nothing for a drag of anything but files. */
    explicit DropWatch(QDrag *drag);
    ~DropWatch() override;

    /** Runs the drag. Copies that were made for a program that it only passed go at once. */
    void run(Qt::DropActions actions, Qt::DropAction usual = Qt::IgnoreAction);
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    /** The drag has a filter of its own, and the one that was installed last comes first. */
    void comeFirst();

    QPointer<QDrag> m_drag;
    QPointer<FileDragData> m_data;
    bool m_isAccepted = false;
    bool m_isOver = false;
    bool m_isOurs = false;
};
