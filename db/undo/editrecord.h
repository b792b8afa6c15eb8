#pragma once

#include "db/undo/rowreader.h"

#include <QMap>

/**
 * Keeps what the edit that is running changes: its rows are read before it and after it, within its
 * transaction, and compared. An edit that watches nothing leaves nothing to take back. GUI thread.
 */
class EditRecord
{
public:
    /** Borrowed; before any edit. */
    void setReader(RowReader *reader) { m_reader = reader; }

    /** A try of an edit begins: what was noted of one before is void. */
    void begin();
    /** Before the edit writes: it may change, remove or add rows whose column has one of these values. */
    bool watch(UndoTable table, const QString &column, const QStringList &values);
    bool watch(UndoTable table, const QString &column, const QVector<qint64> &ids);
    /** The same of rows that are new, once their ids are known. */
    void added(UndoTable table, const QString &column, const QVector<qint64> &ids);
    void addLinks(const TagLinks &links);
    /** What is known to change, row by row, and is not read once more. */
    void keep(const ChangeSet &changes)
    {
        m_changes.rows += changes.rows;
        m_changes.links += changes.links;
    }
    /** The name and the outcome of the step, whole texts. */
    void setWords(const QString &name, const QString &outcome);
    /** What is told though nothing, or not all of it, can be taken back. */
    void setOutcome(const QString &outcome)
    {
        m_step.outcome = outcome;
        m_isTold = true;
    }
    /** The edit that is running cannot be taken back. */
    void forget() { m_isForgotten = true; }
    /** Reads what the edit left; false when that failed, and the edit cannot be taken back then. */
    bool finish();
    /** What was kept; it is empty after that. Without edits in it when there is only something to tell. */
    EditStep take();

private:
    struct Scope
    {
        UndoTable table;
        QString column;
        QStringList values;
    };
    bool readAfter(QMap<UndoTable, RowImages> &after);

    RowReader *m_reader = nullptr;
    QVector<Scope> m_scopes;
    QMap<UndoTable, RowImages> m_before;
    ChangeSet m_changes;
    EditStep m_step;
    bool m_isForgotten = false;
    bool m_isTold = false;
};
