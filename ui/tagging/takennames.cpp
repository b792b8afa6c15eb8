#include "ui/tagging/takennames.h"

#include "app/settings/showntext.h"

#include <QPainter>
#include <QStyle>

namespace {
constexpr int padding = 6;
constexpr int gap = 4;
constexpr int longestName = 40; // signs
} // namespace

TakenNames::TakenNames(QWidget *parent) : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Preferred);
    setObjectName(QStringLiteral("takenNames"));
}

QString TakenNames::textOf(const Name &name)
{
    const QString text = ShownText::cut(name.first, longestName);
    return name.second ? tr("New: %1").arg(text) : text;
}

int TakenNames::widthOf(const Name &name) const
{
    return fontMetrics().horizontalAdvance(textOf(name)) + 2 * padding;
}

void TakenNames::setNames(const QVector<Name> &names)
{
    m_names = names;
    QStringList texts;
    for (const Name &name : names)
        texts.append(textOf(name));
    setAccessibleName(texts.join(QLatin1String(", ")));
    // All of them, as the oldest are painted out of sight where the room is short.
    setToolTip(ShownText::toolTip(accessibleName()));
    setVisible(!names.isEmpty());
    updateGeometry();
    update();
}

QSize TakenNames::sizeHint() const
{
    int width = 0;
    for (const Name &name : m_names)
        width += widthOf(name) + gap;
    // The text that is typed needs its room, too.
    const int most = parentWidget() ? parentWidget()->width() / 2 : width;
    return {qMin(width, most), fontMetrics().height() + padding};
}

void TakenNames::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    int right = width() - gap;
    // From the end, so that the one taken last, which Backspace takes back, is always seen.
    for (int i = m_names.size() - 1; i >= 0 && right > 0; --i) {
        const Name &name = m_names.at(i);
        const int wide = widthOf(name);
        const QRect frame =
            QStyle::visualRect(layoutDirection(), rect(), {right - wide, 1, wide - 1, height() - 3});
        painter.setPen(palette().color(name.second ? QPalette::Highlight : QPalette::Mid));
        painter.setBrush(palette().color(name.second ? QPalette::Base : QPalette::Button));
        painter.drawRoundedRect(frame, 3, 3);
        painter.setPen(palette().color(QPalette::WindowText));
        painter.drawText(frame, Qt::AlignCenter, textOf(name));
        right -= wide + gap;
    }
}
