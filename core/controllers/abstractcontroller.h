#pragma once

#include "models/base/edithost.h"

#include <QObject>
#include <QVector>

class AbstractQueryConstructor;
class Collection;
class DatabaseManger;
class UserPrompts;

/**
 * What the views and models of one domain talk to. A controller belongs to its collection and borrows the
 * manager. Every edit, of its own or of a view, passes mayEdit() first.
 */
class AbstractController : public QObject, public virtual EditHost
{
    Q_OBJECT

public:
    AbstractController(DatabaseManger *manager, const AbstractQueryConstructor *constructor,
                       Collection *collection);
    ~AbstractController() override;

    /** False without a manager. */
    bool isReadOnly() const override;
    bool mayEdit() override;
    virtual void showReadOnlyMessage();
    /** The first load of the domain's records, after opening. */
    virtual void load() = 0;

    /** Without ids that no tag has: what is dropped may come from a window with another database. */
    QVector<qint64> knownTags(const QVector<qint64> &tagIds) const;

    Collection *collection() const { return m_collection; }

protected:
    DatabaseManger *manager() const { return m_manager; }
    const AbstractQueryConstructor *queryConstructor() const { return m_queryConstructor; }
    UserPrompts &prompts() const;

private:
    DatabaseManger *m_manager;
    const AbstractQueryConstructor *m_queryConstructor;
    Collection *m_collection;
};
