#pragma once

#include <QList>
#include <QTabBar>
#include <QVector>

/**
 * The tabs under the table of tags: "All Tags", "D-Tags" and a tab for each group that is shown as one. Tabs
 * can be moved, so each is known by its data: no data for all tags, -1 for the D-Tags, else the group's id.
 */
class TagGroupBar : public QTabBar
{
    Q_OBJECT

public:
    explicit TagGroupBar(QWidget *parent = nullptr);

    /** The data of a tab; 0, as for "All Tags", outside the tabs. */
    qint64 groupAt(int index) const;
    qint64 currentGroup() const { return groupAt(currentIndex()); }
    /** -1 when there is no such tab. */
    int indexOfGroup(qint64 groupId) const;
    /** What the tabs take that are there without any group. */
    int standingTabsWidth() const;

    void addGroupTab(qint64 groupId, const QString &name);
    void renameGroupTab(qint64 groupId, const QString &name);
    void removeGroupTab(qint64 groupId);
    /** Leaves the two fixed tabs, at their places, "All Tags" being current. */
    void removeGroupTabs();

    /** The data of all tabs in their order; of the groups alone while the fixed tabs stand at their places.
     */
    QList<int> order() const;
    /** Brings the tabs into an order, as far as they are there; the others follow behind. */
    void setOrder(const QList<int> &groupIds);

signals:
    void tagsDropped(QVector<qint64> tagIds, qint64 groupId);

protected:
    void paintEvent(QPaintEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dragLeaveEvent(QDragLeaveEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    QSize minimumTabSizeHint(int index) const override;

private:
    bool isTabOnTheMove() const;
    void markDropTarget(int index);

    int m_dropTarget = -1; // the tab of a group that tags are held over
};
