#pragma once

#include <QObject>
#include <QPointer>

class GroupsController;
class TagGroupBar;

/**
 * The arrangement of the tabs of tag groups: a tab for each group that is shown as one when a database opens,
 * their order and the current one, kept from one opening to the next and over a reload of all records.
 * Borrows the bar, and the controller from setting to setting. Owned by the dock of the tags.
 */
class TagGroupTabs : public QObject
{
    Q_OBJECT

public:
    TagGroupTabs(TagGroupBar *bar, QObject *parent);

    /** Keeps the arrangement with the controller before, and takes that of this one; null leaves no tabs. */
    void setController(GroupsController *controller);

private:
    void detach();
    void attach();
    void saveOrder();
    void remember();
    void bringBack();

    TagGroupBar *m_bar;
    QPointer<GroupsController> m_groups;
    qint64 m_rememberedGroup = 0; // the current tab while all records are read again
    bool m_isArranging = false;   // tabs are moved by the program
};
