#include "ui/widgets/dropwatch.h"

#include "core/controllers/filedragdata.h"

#include <QDrag>
#include <QEvent>
#include <QGuiApplication>
#include <QTimer>

DropWatch::DropWatch(QDrag *drag) : m_drag(drag), m_data(qobject_cast<FileDragData *>(drag->mimeData()))
{
    if (!m_data)
        return;
    QTimer::singleShot(0, this, &DropWatch::comeFirst);
    // Elsewhere the window system keeps the button's release to itself: who asks for URLs gets copies.
    if (QGuiApplication::platformName() != QLatin1String("xcb"))
        return;
    m_data->setHovering(true);
    connect(drag, &QDrag::actionChanged, this, [this](Qt::DropAction action) {
        m_isAccepted = action != Qt::IgnoreAction;
        comeFirst();
    });
}

DropWatch::~DropWatch()
{
    if (m_data)
        m_data->setHovering(false);
}

void DropWatch::run(Qt::DropActions actions, Qt::DropAction usual)
{
    const Qt::DropAction action = m_drag->exec(actions, usual);
    if (m_data && (action == Qt::IgnoreAction || m_isOurs))
        m_data->removeCopies();
}

void DropWatch::comeFirst()
{
    QCoreApplication::instance()->installEventFilter(this);
}

bool DropWatch::eventFilter(QObject * /*watched*/, QEvent *event)
{
    m_isOurs = m_isOurs || event->type() == QEvent::Drop;
    if (event->type() != QEvent::MouseButtonRelease || m_isOver)
        return false;
    m_isOver = true;
    if (!m_data)
        return false;
    m_data->setHovering(false);
    // A target is one of our own windows.
    if (!m_isAccepted || !m_drag || m_drag->target() || m_data->makeCopies())
        return false;
    QDrag::cancel();
    return true;
}
