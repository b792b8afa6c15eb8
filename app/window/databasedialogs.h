#pragma once

#include <QCoreApplication>

class Collection;
class PopupMessager;
class QWidget;
struct PresentableDuplicates;

/**
 * The dialogs on what the open database holds: its version, its groups of tags, its browsing trees, and the
 * duplicates that came into it. They stand above the window, whose words they speak. Each does nothing
 * without a collection, and may outlive the one that it was opened on.
 */
class DatabaseDialogs
{
    Q_DECLARE_TR_FUNCTIONS(MainWindow)

public:
    DatabaseDialogs(PopupMessager *messager, QWidget *window) : m_messager(messager), m_window(window) {}

    void tellVersion(const Collection *collection) const;
    void editTagGroups(Collection *collection) const;
    /** False where there are no trees to choose from. */
    bool chooseBrowsingTree(Collection *collection) const;
    void promptAboutDuplicates(const PresentableDuplicates &duplicates, Collection *collection) const;

private:
    PopupMessager *m_messager;
    QWidget *m_window;
};
