#pragma once

#include <QObject>
#include <QSqlDatabase>

class AbstractQueryConstructor;

/**
 * Brings a database of an older program up to the current schema. Built on the stack for one upgrade, on the
 * main thread, with a connection that nothing else uses; borrows the query constructor. Reasons of a failure
 * go to the log.
 */
class DataBaseUpdater : public QObject
{
    Q_OBJECT

public:
    explicit DataBaseUpdater(const AbstractQueryConstructor *constructor, QObject *parent = nullptr);

    bool isVersionKnown(const QSqlDatabase &database) const;
    bool needsUpgrade(const QSqlDatabase &database) const;
    /**
     * Runs all missing steps. False when one failed, and when the version is unknown or current already. The
     * steps before a failed one stay, so that a later call goes on from there.
     */
    bool update(const QSqlDatabase &database) const;

private:
    int versionOf(const QSqlDatabase &database) const;
    bool upgradeTo(int target, const QSqlDatabase &database) const;
    bool runTransition(int target, const QSqlDatabase &database) const;

    const AbstractQueryConstructor *m_constructor;
};
