#pragma once

#include "app/settings/dbdetails.h"

#include <QList>
#include <QObject>

class QAction;

/**
 * The five entries of the recent list: actions that carry their DBDetails as data, newest first, hidden while
 * unused. Owned by the main window.
 */
class RecentDatabases : public QObject
{
    Q_OBJECT

public:
    explicit RecentDatabases(QObject *parent);

    /** In display order, for the menu. */
    QList<QAction *> actions() const { return m_actions; }
    /** The details of the newest entry, of type 0 when there is none. */
    DBDetails newest() const;

    void load();
    void save() const;
    /** Drops local entries whose file is gone, moves the open database, if any, to the top, and saves. */
    void remember(const DBDetails &open = {});

signals:
    void chosen(const DBDetails &details);

private:
    static DBDetails details(const QAction *action);
    void setEntries(const QList<DBDetails> &entries);
    QList<DBDetails> entries() const;

    QList<QAction *> m_actions;
};
