#include "core/undo/undohistory.h"

#include "db/manager/databasemanger.h"

#include <QScopedValueRollback>

#include <utility>

/** A command that does nothing by itself: the history replays it before it moves on, as that may fail. */
class UndoHistory::Step : public QUndoCommand
{
public:
    Step(const EditStep &step, const Kept &before) : QUndoCommand(step.name), m_step(step), m_before(before)
    {
    }

    const EditStep &step() const { return m_step; }
    /** What the settings had before it, and after it once it has been taken back. */
    Kept &kept(bool isUndo) { return isUndo ? m_before : m_after; }

private:
    EditStep m_step;
    Kept m_before;
    Kept m_after;
};

UndoHistory::UndoHistory(DatabaseManger *manager, const std::function<bool()> &mayEdit, QObject *parent)
    : QObject(parent), m_manager(manager), m_mayEdit(mayEdit)
{
    m_steps.setUndoLimit(mostSteps);
    connect(manager, &DatabaseManger::aboutToEdit, this, &UndoHistory::noteState);
    connect(manager, &DatabaseManger::edited, this, &UndoHistory::add);
    connect(&m_steps, &QUndoStack::indexChanged, this, &UndoHistory::changed);
}

void UndoHistory::addKeeper(const QString &name, const Keeper &keeper)
{
    m_keepers.insert(name, keeper);
}

void UndoHistory::setMostSteps(int steps)
{
    m_steps.clear();
    m_steps.setUndoLimit(steps);
}

UndoHistory::Kept UndoHistory::read() const
{
    Kept kept;
    for (auto keeper = m_keepers.cbegin(); keeper != m_keepers.cend(); ++keeper)
        kept.insert(keeper.key(), keeper->read());
    return kept;
}

void UndoHistory::noteState()
{
    if (!m_isReplaying)
        m_keptBefore = read();
}

void UndoHistory::add(const EditStep &step)
{
    if (m_isReplaying)
        return;
    if (!step.outcome.isEmpty())
        emit happened(step.outcome);
    if (m_scopes == 0) {
        push(step);
        return;
    }
    if (m_scopeStep.edits.isEmpty())
        m_keptBeforeScope = m_keptBefore;
    if (m_scopeStep.name.isEmpty())
        m_scopeStep.name = step.name;
    m_scopeStep.edits += step.edits;
}

void UndoHistory::push(const EditStep &step)
{
    if (!step.edits.isEmpty())
        m_steps.push(new Step(step, m_keptBefore));
}

void UndoHistory::openScope(const QString &name)
{
    if (m_scopes++ == 0) {
        m_scopeStep = {};
        m_scopeStep.name = name;
    }
}

void UndoHistory::closeScope()
{
    if (--m_scopes > 0)
        return;
    m_keptBefore = m_keptBeforeScope;
    push(std::exchange(m_scopeStep, {}));
}

void UndoHistory::undo()
{
    if (canUndo() && run(m_steps.index() - 1, true))
        m_steps.undo();
}

void UndoHistory::redo()
{
    if (canRedo() && run(m_steps.index(), false))
        m_steps.redo();
}

bool UndoHistory::run(int index, bool isUndo)
{
    // Between two edits that belong together there is nothing to take back yet.
    if (m_isReplaying || m_scopes > 0 || !m_mayEdit())
        return false;
    // The stack has them as constants, and none but this one makes them.
    auto *step = static_cast<Step *>(const_cast<QUndoCommand *>(m_steps.command(index)));
    const QScopedValueRollback<bool> replaying(m_isReplaying, true);
    ReplayLosses losses;
    const Kept now = read();
    if (!m_manager->replay(step->step(), isUndo, losses))
        return false;
    step->kept(!isUndo) = now;
    giveBack(step->kept(isUndo));
    emit happened((isUndo ? tr("Undone: %1") : tr("Done again: %1")).arg(step->step().name));
    if (!losses.isEmpty())
        tellLosses(losses, isUndo);
    return true;
}

void UndoHistory::giveBack(const Kept &kept)
{
    for (auto value = kept.cbegin(); value != kept.cend(); ++value) {
        const auto keeper = m_keepers.constFind(value.key());
        if (keeper != m_keepers.cend())
            keeper->write(value.value());
    }
}

void UndoHistory::tellLosses(const ReplayLosses &losses, bool isUndo)
{
    QStringList parts;
    const auto add = [&parts](int n, const QString &one, const QString &more) {
        if (n > 0)
            parts.append(n == 1 ? one : more);
    };
    add(losses.files, tr("1 file"), tr("%Ln files", nullptr, losses.files));
    add(losses.tags, tr("1 tag"), tr("%Ln tags", nullptr, losses.tags));
    add(losses.nodes, tr("1 node"), tr("%Ln nodes", nullptr, losses.nodes));
    add(losses.others, tr("1 link"), tr("%Ln links", nullptr, losses.others));
    const QString list = parts.join(tr(", ", "between the parts of a list"));
    emit fellShort(isUndo ? tr("Undo") : tr("Redo"),
                   tr("The rest is done. These have been changed or removed since, and were left as they "
                      "are: %1.")
                       .arg(list));
}
