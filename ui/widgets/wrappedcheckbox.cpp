#include "ui/widgets/wrappedcheckbox.h"

#include <QStyleOptionButton>
#include <QStylePainter>

namespace {
constexpr int leastLetters = 12;
constexpr int textFlags = Qt::AlignTop | Qt::TextWordWrap | Qt::TextShowMnemonic;
} // namespace

WrappedCheckBox::WrappedCheckBox(QWidget *parent) : QCheckBox(parent)
{
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Minimum, QSizePolicy::CheckBox);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
}

QStyleOptionButton WrappedCheckBox::option() const
{
    QStyleOptionButton option;
    initStyleOption(&option);
    return option;
}

int WrappedCheckBox::indicatorRoom() const
{
    const QStyleOptionButton box = option();
    return style()->pixelMetric(QStyle::PM_IndicatorWidth, &box, this) +
           style()->pixelMetric(QStyle::PM_CheckBoxLabelSpacing, &box, this);
}

QSize WrappedCheckBox::textSize(int width) const
{
    const QStyleOptionButton box = option();
    const QRect bounds(0, 0, qMax(1, width), QWIDGETSIZE_MAX);
    const QSize text = box.fontMetrics.boundingRect(bounds, textFlags, box.text).size();
    return text.expandedTo({0, style()->pixelMetric(QStyle::PM_IndicatorHeight, &box, this)});
}

QSize WrappedCheckBox::sizeHint() const
{
    // A text that is exactly as wide as its room may be broken all the same.
    return textSize(QWIDGETSIZE_MAX) + QSize(indicatorRoom() + 2, 0);
}

QSize WrappedCheckBox::minimumSizeHint() const
{
    const int width =
        qMin(sizeHint().width(), indicatorRoom() + leastLetters * fontMetrics().averageCharWidth());
    return {width, textSize(QWIDGETSIZE_MAX).height()};
}

int WrappedCheckBox::heightForWidth(int width) const
{
    return textSize(width - indicatorRoom()).height();
}

void WrappedCheckBox::paintEvent(QPaintEvent *)
{
    QStylePainter painter(this);
    QStyleOptionButton box = option();
    // The box stands beside the first line.
    const QRect firstLine(0, 0, width(), textSize(QWIDGETSIZE_MAX).height());
    const QSize size(style()->pixelMetric(QStyle::PM_IndicatorWidth, &box, this),
                     style()->pixelMetric(QStyle::PM_IndicatorHeight, &box, this));
    box.rect = QStyle::alignedRect(layoutDirection(), Qt::AlignLeading | Qt::AlignVCenter, size, firstLine);
    painter.drawPrimitive(QStyle::PE_IndicatorCheckBox, box);

    const QRect room =
        QStyle::visualRect(layoutDirection(), rect(), rect().adjusted(indicatorRoom(), 0, 0, 0));
    painter.drawItemText(room, textFlags | QStyle::visualAlignment(layoutDirection(), Qt::AlignLeading),
                         box.palette, isEnabled(), box.text, QPalette::WindowText);
    if (!hasFocus() || !(box.state & QStyle::State_KeyboardFocusChange))
        return;
    QStyleOptionFocusRect focus;
    focus.QStyleOption::operator=(box);
    focus.rect = room;
    painter.drawPrimitive(QStyle::PE_FrameFocusRect, focus);
}

bool WrappedCheckBox::hitButton(const QPoint &position) const
{
    return rect().contains(position);
}
