#pragma once

#include "core/undo/keptstate.h"
#include "db/undo/changeset.h"
#include "db/undo/replaylosses.h"

#include <QObject>
#include <QUndoStack>

#include <functional>

class DatabaseManger;
class GoneRecords;

/**
 * The edits of the open database that can be taken back and done again, the last ones first. What an edit
 * changes comes from the manager; what is kept beside the database, such as the order of nodes, from whoever
 * keeps that. Owned by the collection. GUI thread.
 */
class UndoHistory : public QObject
{
    Q_OBJECT

public:
    static constexpr int mostSteps = 300;

    /** The gate of all edits. */
    UndoHistory(DatabaseManger *manager, const std::function<bool()> &mayEdit, QObject *parent);
    ~UndoHistory() override;

    KeptState &keptState() { return m_kept; }
    /** What a keeper has was changed by itself: a step with this name gives it back. */
    void keptChanged(const QString &keeper, const QString &name, const QString &outcome);

    bool canUndo() const { return m_steps.canUndo(); }
    bool canRedo() const { return m_steps.canRedo(); }
    /** The names of the steps that come next; empty without one. */
    QString undoText() const { return m_steps.undoText(); }
    QString redoText() const { return m_steps.redoText(); }
    /** For tests; forgets all steps. */
    void setMostSteps(int steps);

public slots:
    void undo();
    void redo();

signals:
    /** What can be taken back, or done again, or its name. */
    void changed();
    /** What an edit, or a step, came to: one sentence. */
    void happened(const QString &text);
    /** Title and text: a step was not taken back as a whole. */
    void fellShort(const QString &title, const QString &text);

private:
    friend class UndoScope;
    class Step;

    void noteState();
    void add(const EditStep &step);
    void push(const EditStep &step, const QStringList &keepers);
    bool run(int index, bool isUndo);
    void tellLosses(const ReplayLosses &losses, bool isUndo);
    bool isWholesale(const EditStep &step) const;
    void finishReplay(ReplayLosses losses);
    void move(bool isUndo);
    void openScope(const QString &name);
    void closeScope();

    DatabaseManger *m_manager;
    std::function<bool()> m_mayEdit;
    KeptState m_kept;
    GoneRecords *m_gone;
    QUndoStack m_steps;
    KeptState::Values m_keptBefore; ///< the edit that is running, or whatever comes next
    bool m_isReplaying = false;
    enum Awaited { Nothing, Undoing, Redoing };
    Awaited m_awaited = Nothing; ///< from the worker
    int m_awaitedIndex = 0;
    ReplayLosses m_awaitedLosses;
    int m_scopes = 0;
    EditStep m_scopeStep;
    KeptState::Values m_keptBeforeScope;
};

/** As long as it lives, all edits are gathered into one step. On the stack; the history outlives it. */
class UndoScope
{
public:
    /** Null does nothing. Without a name the step has that of its first edit. */
    explicit UndoScope(UndoHistory *history, const QString &name = QString()) : m_history(history)
    {
        if (m_history)
            m_history->openScope(name);
    }
    ~UndoScope()
    {
        if (m_history)
            m_history->closeScope();
    }
    UndoScope(const UndoScope &) = delete;
    UndoScope &operator=(const UndoScope &) = delete;

private:
    UndoHistory *m_history;
};
