#include "ui/views/taggroupbar.h"

#include "app/settings/constants.h"
#include "app/settings/showntext.h"
#include "models/base/idlistmime.h"
#include "models/tags/tagsgroupproxy.h"

#include <QAbstractButton>
#include <QDragEnterEvent>
#include <QFile>
#include <QMimeData>
#include <QStyleOptionTab>
#include <QStylePainter>

#include <algorithm>

namespace {
constexpr qint64 allTags = TagsGroupProxy::AllTagsTab;
constexpr qint64 dTags = TagsGroupProxy::DTagsTab;
constexpr int longestTab = 200;

QString escaped(const QString &name)
{
    // A single one would underline the next letter.
    return ShownText::cut(name, longestTab).replace(QLatin1Char('&'), QLatin1String("&&"));
}

void paintTarget(QPainter &painter, const QRect &tab, const QColor &colour)
{
    constexpr int width = 2;
    constexpr int radius = 6;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(colour, width));
    painter.drawRoundedRect(tab.adjusted(width, width, -2 * width, -2 * width), radius, radius);
    painter.restore();
}

QString scrollButtonStyle()
{
    QFile file(QStringLiteral(":misc/tabBarStyleSheet.txt"));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}
} // namespace

TagGroupBar::TagGroupBar(QWidget *parent) : QTabBar(parent)
{
    setObjectName(QStringLiteral("solitaryTabBar"));
    setAccessibleName(tr("Tag Groups"));
    setShape(RoundedSouth);
    setAcceptDrops(true);
    setMovable(true);
    setExpanding(false);
    setUsesScrollButtons(true);
    setElideMode(Qt::ElideNone);
    setContextMenuPolicy(Qt::CustomContextMenu);
    setStyleSheet(scrollButtonStyle());

    const int all = addTab(tr("All Tags"));
    setTabToolTip(all, tr("All tags of the database"));
    const int differing = addTab(tr("D-Tags"));
    setTabData(differing, dTags);
    setTabToolTip(differing, tr("The tags that are on some, but not all, of the files shown"));
}

qint64 TagGroupBar::groupAt(int index) const
{
    return tabData(index).toLongLong();
}

int TagGroupBar::indexOfGroup(qint64 groupId) const
{
    for (int i = 0; i < count(); ++i) {
        if (groupAt(i) == groupId)
            return i;
    }
    return -1;
}

void TagGroupBar::addGroupTab(qint64 groupId, const QString &name)
{
    if (indexOfGroup(groupId) >= 0)
        return;
    const int index = addTab(escaped(name));
    setTabData(index, groupId);
    setTabToolTip(index, ShownText::toolTip(name));
}

void TagGroupBar::renameGroupTab(qint64 groupId, const QString &name)
{
    const int index = indexOfGroup(groupId);
    if (index < 0)
        return;
    setTabText(index, escaped(name));
    setTabToolTip(index, ShownText::toolTip(name));
}

void TagGroupBar::removeGroupTab(qint64 groupId)
{
    const int index = groupId > 0 ? indexOfGroup(groupId) : -1;
    if (index >= 0)
        removeTab(index);
}

void TagGroupBar::removeGroupTabs()
{
    setCurrentIndex(indexOfGroup(allTags));
    for (int i = count() - 1; i >= 0; --i) {
        if (groupAt(i) > 0)
            removeTab(i);
    }
    setOrder({});
}

QList<int> TagGroupBar::order() const
{
    QList<int> order;
    for (int i = 0; i < count(); ++i)
        order.append(static_cast<int>(groupAt(i)));
    if (order.value(0) == allTags && order.value(1) == dTags)
        order.erase(order.begin(), order.begin() + 2);
    return order;
}

void TagGroupBar::setOrder(const QList<int> &groupIds)
{
    QList<int> wanted = groupIds;
    if (!wanted.contains(int(dTags)))
        wanted.prepend(int(dTags));
    if (!wanted.contains(int(allTags)))
        wanted.prepend(int(allTags));
    int place = 0;
    for (const int groupId : qAsConst(wanted)) {
        const int index = indexOfGroup(groupId);
        // What stands before the place has been put there already.
        if (index >= place)
            moveTab(index, place++);
    }
}

int TagGroupBar::standingTabsWidth() const
{
    return tabSizeHint(indexOfGroup(allTags)).width() + tabSizeHint(indexOfGroup(dTags)).width();
}

QSize TagGroupBar::minimumTabSizeHint(int index) const
{
    return tabSizeHint(index); // a bar that is too wide scrolls instead of cutting names
}

void TagGroupBar::paintEvent(QPaintEvent *event)
{
    // Only the base can make the picture of a tab that is dragged along follow the pointer.
    if (isTabOnTheMove()) {
        QTabBar::paintEvent(event);
        return;
    }
    QStylePainter painter(this);
    for (int i = 0; i < count(); ++i) {
        QStyleOptionTab option;
        initStyleOption(&option, i);
        if (!option.rect.intersects(event->rect()))
            continue;
        painter.drawControl(QStyle::CE_TabBarTab, option);
        if (i == m_dropTarget)
            paintTarget(painter, option.rect, palette().color(QPalette::Highlight));
    }
}

/** The tab that is dragged along is drawn by a child widget, the only one beside the scroll buttons. */
bool TagGroupBar::isTabOnTheMove() const
{
    const auto children = findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly);
    return std::any_of(children.cbegin(), children.cend(), [](const QWidget *child) {
        return child->isVisible() && !qobject_cast<const QAbstractButton *>(child);
    });
}

void TagGroupBar::markDropTarget(int index)
{
    if (m_dropTarget == index)
        return;
    m_dropTarget = index;
    update();
}

void TagGroupBar::dragEnterEvent(QDragEnterEvent *event)
{
    if (event->mimeData()->formats().contains(Constants::tagMimeType))
        event->acceptProposedAction();
    else
        event->ignore();
}

void TagGroupBar::dragMoveEvent(QDragMoveEvent *event)
{
    const int index = tabAt(event->pos());
    markDropTarget(index >= 0 && groupAt(index) > 0 ? index : -1);
    if (index >= 0 && groupAt(index) != allTags)
        event->acceptProposedAction();
    else
        event->ignore();
}

void TagGroupBar::dragLeaveEvent(QDragLeaveEvent * /*event*/)
{
    markDropTarget(-1);
}

void TagGroupBar::dropEvent(QDropEvent *event)
{
    markDropTarget(-1);
    const int index = tabAt(event->pos());
    const QVector<qint64> tagIds = IdListMime::unpack(event->mimeData(), Constants::tagMimeType);
    const qint64 groupId = index >= 0 ? groupAt(index) : 0;
    if (groupId <= 0 || tagIds.isEmpty()) {
        event->ignore();
        return;
    }
    event->acceptProposedAction();
    emit tagsDropped(tagIds, groupId);
}
