#pragma once

#include "db/undo/changeset.h"

#include <QHash>
#include <QStringList>
#include <QVariant>

#include <functional>

/**
 * What the database does not hold of its records and an edit changes all the same: the order of nodes, their
 * open branches, the tabs of groups. It is read around each step, and given back with it.
 */
class KeptState
{
public:
    using Values = QHash<QString, QVariant>;
    struct Keeper
    {
        /** It is given back with a step by which rows of one of them come or go. */
        QVector<UndoTable> tables;
        std::function<QVariant()> read;
        std::function<void(const QVariant &)> write;
    };

    void add(const QString &name, const Keeper &keeper) { m_keepers.insert(name, keeper); }
    void remove(const QString &name) { m_keepers.remove(name); }

    Values read() const;
    /** Those of the keepers that are named. */
    void write(const Values &values, const QStringList &keepers) const;
    QStringList keepersOf(const EditStep &step) const;

private:
    QHash<QString, Keeper> m_keepers;
};
