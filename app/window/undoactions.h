#pragma once

#include <QObject>
#include <QPointer>

class MainUi;
class QAction;
class UndoHistory;

/** The two commands that take edits back and do them again, at the head of the menu Edit. Owned by the
 * window. */
class UndoActions : public QObject
{
    Q_OBJECT

public:
    explicit UndoActions(QObject *parent);

    /** After all others have taken theirs. */
    void takePlaces(MainUi &ui);
    /** Borrowed; null while no database is open. */
    void setHistory(UndoHistory *history);

private:
    void update();

    QAction *m_undo;
    QAction *m_redo;
    QPointer<UndoHistory> m_history;
};
