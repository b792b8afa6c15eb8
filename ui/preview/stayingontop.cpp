#include "ui/preview/stayingontop.h"

#include "app/settings/previewsettings.h"

#include <QEvent>
#include <QGuiApplication>
#include <QWidget>
#include <QWindow>

StayingOnTop::StayingOnTop(QWidget *window) : QObject(window), m_window(window)
{
    m_window->setWindowFlag(Qt::WindowStaysOnTopHint, PreviewSettings::keepPreviewOnTop());
    m_window->installEventFilter(this);
}

void StayingOnTop::readSettings()
{
    const bool stays = PreviewSettings::keepPreviewOnTop();
    if (stays == m_window->windowFlags().testFlag(Qt::WindowStaysOnTopHint))
        return;
    // Another flag makes another window of it, which comes without taking the keyboard away.
    const bool wasVisible = m_window->isVisible();
    const QByteArray geometry = m_window->saveGeometry();
    m_window->setWindowFlag(Qt::WindowStaysOnTopHint, stays);
    m_window->restoreGeometry(geometry);
    m_window->setAttribute(Qt::WA_ShowWithoutActivating);
    m_window->setVisible(wasVisible);
    m_window->setAttribute(Qt::WA_ShowWithoutActivating, false);
}

bool StayingOnTop::eventFilter(QObject *watched, QEvent *event)
{
    // There is a native window by then, which the compositor does not know yet. Elsewhere the flag does it
    // all.
    if (event->type() == QEvent::Show && m_window->windowHandle() &&
        QGuiApplication::platformName().startsWith(QLatin1String("wayland"))) {
        const bool stays = m_origin && m_window->windowFlags().testFlag(Qt::WindowStaysOnTopHint);
        m_window->windowHandle()->setTransientParent(stays ? m_origin->windowHandle() : nullptr);
    }
    return QObject::eventFilter(watched, event);
}
