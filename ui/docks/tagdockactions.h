#pragma once

#include <QAction>
#include <QHash>
#include <QObject>
#include <QPointer>

class MainUi;

/**
 * The commands on tags and on their groups: makes them, puts them into the menu and the bar of tags, and
 * decides which are offered. What they do is the business of the dock that owns this.
 */
class TagDockActions : public QObject
{
    Q_OBJECT

public:
    /** The keys of the table of commands. */
    enum Key : int {
        TagMenu = 0,
        AssignGroups = 1,
        AddTag = 2,
        DeleteTag = 3,
        RenameTag = 4,
        ExportTags = 5,
        ExportMenuEntry = 7,
        ExportTagsFromContext = 8,
        AddGroup = 13,
        DeleteGroup = 14,
        NewTag = 15,
        ActivateAnd = 16,
        ActivateOr = 17,
        EditMode = 18,
        LinkTags = 19,
        MergeTags = 20
    };

    explicit TagDockActions(QObject *parent);

    void takePlaces(MainUi &ui);
    /** Null for the keys of the window while takePlaces has not run, or once the window has gone. */
    QAction *action(Key key) const { return m_actions.value(key); }

    /** What the commands depend on. */
    struct Situation
    {
        bool areTagsWritable = false;
        bool areGroupsWritable = false;
        bool hasSelection = false;
        bool hasSeveral = false;
        bool isLocal = false;
    };
    void updateAvailability(const Situation &situation);

private:
    QAction *add(Key key, const QString &text, const char *icon = nullptr);

    QHash<int, QPointer<QAction>> m_actions; // some are the window's, and go before the docks
};
