#include "ui/widgets/hoveropener.h"

#include <QTreeView>

HoverOpener::HoverOpener(QTreeView *view) : QObject(view), m_view(view)
{
    constexpr int restingTime = 600; // ms
    m_timer.setSingleShot(true);
    m_timer.setInterval(restingTime);
    connect(&m_timer, &QTimer::timeout, this, &HoverOpener::open);
}

void HoverOpener::hover(const QModelIndex &index)
{
    if (m_timer.isActive() && m_index == index)
        return;
    m_index = index;
    if (index.isValid() && !m_view->isExpanded(index))
        m_timer.start();
    else
        m_timer.stop();
}

void HoverOpener::stop()
{
    m_timer.stop();
    m_index = QModelIndex();
}

void HoverOpener::open()
{
    if (m_index.isValid())
        m_view->expand(m_index);
}
