#include "ui/widgets/dropwatch.h"

#include "core/controllers/filedragdata.h"

#include <QDrag>
#include <QEvent>
#include <QGuiApplication>
#include <QTimer>

DropWatch::DropWatch(QDrag *drag) : m_drag(drag), m_data(qobject_cast<FileDragData *>(drag->mimeData()))
{
    // Elsewhere the window system keeps the button's release to itself, so that nothing can be told apart.
    if (!m_data || QGuiApplication::platformName() != QLatin1String("xcb"))
        return;
    m_data->setHovering(true);
    QTimer::singleShot(0, this, &DropWatch::comeFirst);
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

void DropWatch::comeFirst()
{
    QCoreApplication::instance()->installEventFilter(this);
}

bool DropWatch::eventFilter(QObject * /*watched*/, QEvent *event)
{
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
