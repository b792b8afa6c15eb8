#include "ui/views/filedrops.h"

#include "app/settings/constants.h"
#include "core/controllers/mainviewcontroller.h"
#include "models/base/droppedurls.h"
#include "ui/views/filecommands.h"

#include <QAbstractItemView>
#include <QDropEvent>
#include <QMimeData>

FileDrops::FileDrops(FileCommands *commands, QObject *parent) : QObject(parent), m_commands(commands) {}

void FileDrops::setController(MainViewController *controller)
{
    m_controller = controller;
}

void FileDrops::watch(QAbstractItemView *view)
{
    // Over its frame and its header a drag arrives at the view itself.
    view->installEventFilter(this);
    view->viewport()->installEventFilter(this);
}

bool FileDrops::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::DragEnter:
    case QEvent::DragMove:
        return handleDrag(static_cast<QDropEvent *>(event));
    case QEvent::Drop:
        return handleDrop(static_cast<QDropEvent *>(event));
    default:
        return QObject::eventFilter(watched, event);
    }
}

bool FileDrops::isWritable() const
{
    return m_controller && !m_controller->isReadOnly();
}

bool FileDrops::handleDrag(QDropEvent *event)
{
    if (!isWritable()) {
        event->ignore();
        return true;
    }
    // Our own files are in the database already.
    if (!event->mimeData()->hasUrls() || event->mimeData()->hasFormat(Constants::fileMimeType))
        return false;
    event->setDropAction(Qt::CopyAction);
    event->accept();
    return true;
}

bool FileDrops::handleDrop(QDropEvent *event)
{
    if (!handleDrag(event))
        return false;
    if (event->isAccepted() && isWritable())
        m_commands->addUrls(DroppedUrls::of(*event->mimeData()));
    return true;
}
