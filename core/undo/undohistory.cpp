#include "core/undo/undohistory.h"

#include "core/undo/gonerecords.h"
#include "core/undo/renamedfiles.h"
#include "db/manager/databasemanger.h"

#include <QScopedValueRollback>

#include <utility>

/** A command that does nothing by itself: the history replays it before it moves on, as that may fail. */
class UndoHistory::Step : public QUndoCommand
{
public:
    Step(const EditStep &step, qint64 number, const QStringList &keepers, const KeptState::Values &before)
        : QUndoCommand(step.name), m_step(step), m_number(number), m_keepers(keepers), m_before(before)
    {
    }

    const EditStep &step() const { return m_step; }
    qint64 number() const { return m_number; }
    const QStringList &keepers() const { return m_keepers; }
    /** What the keepers had before it, and after it once it has been taken back. */
    KeptState::Values &kept(bool isBefore) { return isBefore ? m_before : m_after; }

private:
    EditStep m_step;
    qint64 m_number;
    QStringList m_keepers;
    KeptState::Values m_before;
    KeptState::Values m_after;
};

UndoHistory::UndoHistory(DatabaseManger *manager, const std::function<bool()> &mayEdit, QObject *parent)
    : QObject(parent), m_manager(manager), m_mayEdit(mayEdit)
{
    const auto namedFiles = [this] {
        QSet<qint64> ids;
        for (int i = 0; i < m_steps.count(); ++i) {
            for (const ChangeSet &edit : static_cast<const Step *>(m_steps.command(i))->step().edits) {
                for (const TagLinks &links : edit.links)
                    ids += QSet<qint64>(links.fileIds.cbegin(), links.fileIds.cend());
            }
        }
        return ids;
    };
    m_gone = new GoneRecords(manager, namedFiles, this);
    m_steps.setUndoLimit(mostSteps);
    connect(manager, &DatabaseManger::aboutToEdit, this, &UndoHistory::noteState);
    connect(manager, &DatabaseManger::edited, this, &UndoHistory::add);
    connect(manager, &DatabaseManger::replayed, this, &UndoHistory::finishReplay);
    // Refused, failed or canceled, when it has not been told by then.
    const auto giveUp = [this] {
        if (!m_manager->isTakingReplay())
            m_awaited = Nothing;
    };
    connect(manager, &DatabaseManger::finishedAddingFiles, this, giveUp, Qt::QueuedConnection);
    const auto readKept = [this] { m_keptBefore = m_kept.read(); };
    connect(manager, &DatabaseManger::browsingNodeLoaded, this, readKept);
    connect(&m_steps, &QUndoStack::indexChanged, this, &UndoHistory::changed);
}

UndoHistory::~UndoHistory()
{
    // It tells of its end, to which nobody listens any more.
    m_steps.disconnect(this);
}

void UndoHistory::setMostSteps(int steps)
{
    m_steps.clear();
    m_gone->clear();
    m_steps.setUndoLimit(steps);
}

void UndoHistory::noteState()
{
    m_gone->editBegins();
    if (!m_isReplaying)
        m_keptBefore = m_kept.read();
}

void UndoHistory::add(const EditStep &step)
{
    m_gone->editEnded(m_isReplaying || !step.edits.isEmpty());
    if (m_isReplaying)
        return;
    if (!step.outcome.isEmpty())
        emit happened(step.outcome);
    if (m_scopes == 0) {
        push(step, m_kept.keepersOf(step));
        return;
    }
    // The first edit of a scope tells what there was before all of them.
    if (m_scopeStep.edits.isEmpty())
        m_keptBeforeScope = m_keptBefore;
    if (m_scopeStep.name.isEmpty())
        m_scopeStep.name = step.name;
    m_scopeStep.edits += step.edits;
}

void UndoHistory::keptChanged(const QString &keeper, const QString &name, const QString &outcome)
{
    if (m_isReplaying)
        return;
    EditStep step;
    step.name = name;
    push(step, {keeper});
    emit happened(outcome);
}

void UndoHistory::push(const EditStep &step, const QStringList &keepers)
{
    if (!step.edits.isEmpty() || !keepers.isEmpty())
        m_steps.push(new Step(step, m_gone->nextStep(), keepers, m_keptBefore));
    m_keptBefore = m_kept.read();
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
    const EditStep step = std::exchange(m_scopeStep, {});
    if (step.edits.isEmpty())
        return;
    m_keptBefore = m_keptBeforeScope;
    push(step, m_kept.keepersOf(step));
}

void UndoHistory::undo()
{
    if (canUndo() && run(m_steps.index() - 1, true))
        move(true);
}

void UndoHistory::redo()
{
    if (canRedo() && run(m_steps.index(), false))
        move(false);
}

void UndoHistory::move(bool isUndo)
{
    const QString name = isUndo ? undoText() : redoText();
    if (isUndo)
        m_steps.undo();
    else
        m_steps.redo();
    emit happened((isUndo ? tr("Undone: %1") : tr("Done again: %1")).arg(name));
}

bool UndoHistory::isWholesale(const EditStep &step) const
{
    qint64 pairs = 0;
    for (const ChangeSet &edit : step.edits) {
        for (const TagLinks &links : edit.links)
            pairs += links.fileIds.size();
    }
    return pairs > FileEdits::mostPairsAtOnce();
}

void UndoHistory::finishReplay(ReplayLosses losses)
{
    m_gone->editEnded(true);
    const bool isUndo = m_awaited == Undoing;
    if (std::exchange(m_awaited, Nothing) == Nothing)
        return;
    // What came in between has taken the place of the steps that were to be done again.
    if (m_steps.index() != m_awaitedIndex) {
        m_steps.clear();
        return;
    }
    const int index = isUndo ? m_awaitedIndex - 1 : m_awaitedIndex;
    auto *step = static_cast<Step *>(const_cast<QUndoCommand *>(m_steps.command(index)));
    step->kept(!isUndo) = m_keptBefore;
    m_kept.write(step->kept(isUndo), step->keepers());
    m_keptBefore = m_kept.read();
    losses.files += m_awaitedLosses.files;
    losses.tags += m_awaitedLosses.tags;
    if (!losses.isEmpty())
        tellLosses(losses, isUndo);
    move(isUndo);
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
    ReplayLosses gone;
    const EditStep living = m_gone->living(step->step(), step->number(), gone.files, gone.tags);
    // The stack moves on when the worker has told what it wrote.
    if (isWholesale(living)) {
        m_awaited = m_manager->requestReplay(living, isUndo) ? (isUndo ? Undoing : Redoing) : Nothing;
        m_awaitedIndex = m_steps.index();
        m_awaitedLosses = gone;
        return false;
    }
    RenamedFiles names(*m_manager);
    const QString reason = names.rename(living, isUndo);
    if (!reason.isEmpty()) {
        emit fellShort(isUndo ? tr("Undo") : tr("Redo"), reason);
        return false;
    }
    const KeptState::Values now = m_kept.read();
    if (!living.edits.isEmpty() && !m_manager->replay(living, isUndo, losses))
        return false;
    // From here on the files on the disk keep the names that the records have got.
    names.keep();
    step->kept(!isUndo) = now;
    m_kept.write(step->kept(isUndo), step->keepers());
    m_keptBefore = m_kept.read();
    losses.files += gone.files;
    losses.tags += gone.tags;
    if (!losses.isEmpty())
        tellLosses(losses, isUndo);
    return true;
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
