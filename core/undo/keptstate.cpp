#include "core/undo/keptstate.h"

#include <algorithm>

KeptState::Values KeptState::read() const
{
    Values values;
    for (auto keeper = m_keepers.cbegin(); keeper != m_keepers.cend(); ++keeper)
        values.insert(keeper.key(), keeper->read());
    return values;
}

void KeptState::write(const Values &values, const QStringList &keepers) const
{
    for (const QString &name : keepers) {
        const auto keeper = m_keepers.constFind(name);
        if (keeper != m_keepers.cend() && values.contains(name))
            keeper->write(values.value(name));
    }
}

QStringList KeptState::keepersOf(const EditStep &step) const
{
    QStringList names;
    for (auto keeper = m_keepers.cbegin(); keeper != m_keepers.cend(); ++keeper) {
        const auto isTouched = [&](const RowChange &row) {
            return (row.before.isEmpty() || row.after.isEmpty()) && keeper->tables.contains(row.table);
        };
        const bool isOfStep = std::any_of(step.edits.cbegin(), step.edits.cend(), [&](const ChangeSet &edit) {
            return std::any_of(edit.rows.cbegin(), edit.rows.cend(), isTouched);
        });
        if (isOfStep)
            names.append(keeper.key());
    }
    // The order stands before what is shown in it.
    names.sort();
    return names;
}
