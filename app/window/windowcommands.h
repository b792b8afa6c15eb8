#pragma once

#include "app/window/actionid.h"

#include <QHash>
#include <QObject>

class Collection;
class MainUi;
class QAction;

/**
 * The window's own commands: makes them, puts them into the menus and the bar of files, and decides which are
 * offered. What they do is the business of the window, which owns this.
 */
class WindowCommands : public QObject
{
    Q_OBJECT

public:
    explicit WindowCommands(QObject *parent);

    /** After the parts of the window have taken theirs. The recent databases stand in the first menu. */
    void takePlaces(MainUi &ui, const QList<QAction *> &recentDatabases);
    QAction *action(ActionId id) const { return m_actions.value(id); }
    /** Null without an open collection. */
    void updateAvailability(const Collection *collection);

private:
    QAction *add(ActionId id, const QString &text, const char *icon = nullptr);
    void makeKindsOfAdding();

    QHash<int, QAction *> m_actions;
};
