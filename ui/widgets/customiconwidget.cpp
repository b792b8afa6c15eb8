#include "ui/widgets/customiconwidget.h"

#include <QPainter>

CustomIconWidget::CustomIconWidget(const QIcon &icon, int side, QWidget *parent)
    : QWidget(parent), m_icon(icon), m_side(side)
{
    setObjectName(QStringLiteral("CustomIconWidget"));
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize CustomIconWidget::sizeHint() const
{
    return {m_side, m_side};
}

void CustomIconWidget::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    m_icon.paint(&painter, rect(), Qt::AlignCenter, isEnabled() ? QIcon::Normal : QIcon::Disabled);
}
