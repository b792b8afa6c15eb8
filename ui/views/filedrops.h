#pragma once

#include <QObject>
#include <QPointer>

class FileCommands;
class MainViewController;
class QAbstractItemView;
class QDropEvent;

/**
 * Takes what is dropped on the views of files: files and addresses from elsewhere are added, the database's
 * own ones are left to the view. Belongs to the MainFilesView.
 */
class FileDrops : public QObject
{
    Q_OBJECT

public:
    /** The commands are borrowed. */
    FileDrops(FileCommands *commands, QObject *parent);

    void watch(QAbstractItemView *view);
    /** Borrowed; without one, as in a read-only database, all drags are refused. */
    void setController(MainViewController *controller);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    bool isWritable() const;
    bool handleDrag(QDropEvent *event);
    bool handleDrop(QDropEvent *event);

    FileCommands *m_commands;
    QPointer<MainViewController> m_controller;
};
