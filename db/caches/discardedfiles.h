#pragma once

#include <QBasicTimer>
#include <QList>
#include <QObject>

class File;

/**
 * Records that nobody uses any more. A million of them take most of a second to free, so that is done a
 * little at a time from the event loop. GUI thread.
 */
class DiscardedFiles : public QObject
{
    Q_OBJECT

public:
    explicit DiscardedFiles(QObject *parent = nullptr);
    ~DiscardedFiles() override;

    void add(const QList<File *> &files);
    bool isEmpty() const { return m_files.isEmpty(); }

protected:
    void timerEvent(QTimerEvent *event) override;

private:
    void freeSome();

    QList<File *> m_files;
    QBasicTimer m_next;
};
