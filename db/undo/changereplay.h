#pragma once

#include "core/providers/foreignchanges.h"
#include "core/tagging/tagchange.h"
#include "db/undo/replaylosses.h"
#include "db/undo/rowreader.h"

#include <QMap>

#include <functional>

/**
 * Writes changes of an edit once more, or those that take it back. A row is written only when it stands as
 * the change found it, and only when what it names is there; what somebody else has put to use is not
 * removed. The rest of the changes is written all the same. Lives for one edit on the stack of its caller,
 * which has opened the transaction.
 */
class ChangeReplay : public RowReader
{
    Q_OBJECT

public:
    /** The tags of files, for which the window and the worker have ways of their own. */
    struct Files
    {
        /** Links and unlinks; appends the files that are not there. */
        std::function<bool(const TagChanges &changes, QSet<qint64> &lost)> changeTags;
        /** Those of the tags that files have by now; false when it cannot be told. */
        std::function<bool(const QVector<qint64> &tagIds, QSet<qint64> &used)> readUsed;
    };
    ChangeReplay(const AbstractQueryConstructor *constructor, const Files &files, QObject *parent = nullptr);
    /** The same on another connection, as RowReader has it. */
    ChangeReplay(const AbstractQueryConstructor *constructor, const Files &files, BaseDBProvider &runner,
                 const QString &connectionName);

    /** Within one transaction it may be called again. False when a statement failed. */
    bool run(const ChangeSet &changes);
    const ReplayLosses &losses() const { return m_losses; }
    /** The keys of what was written; whoever writes them tells of the files. */
    const ForeignChanges &touched() const { return m_touched; }
    bool areAutoLinksTouched() const { return m_areAutoLinksTouched; }

private:
    using Rows = QVector<const RowChange *>;

    bool readCurrent(const ChangeSet &changes);
    void judge(const RowChange &change);
    bool dropUnfounded();
    bool readNamed();
    bool isFounded(const RowChange &change) const;
    bool keepUsed();
    bool keepUsed(UndoTable what, UndoTable user, const QString &column);
    bool keepUsedTags();
    bool readTagsOnPaths(const QVector<qint64> &tagIds, QSet<qint64> &used);
    void lose(const RowChange &change);
    void dropRows(const QSet<qint64> &ids, UndoTable table);
    bool write();
    bool removeRows(UndoTable table);
    bool insertRows(UndoTable table);
    bool updateRows(UndoTable table);
    bool writeLinks(const QVector<TagLinks> &links, bool areAdded);
    void note(const RowChange &change);
    Rows rowsOf(UndoTable table, bool (*isWanted)(const RowChange &)) const;

    Files m_files;
    QMap<UndoTable, RowImages> m_current;
    Rows m_rows;                           ///< those that are to be written
    QMap<UndoTable, QSet<qint64>> m_there; ///< of the rows that are named, those that are there
    QMap<UndoTable, QSet<qint64>> m_taken; ///< keys that something else has got meanwhile
    QSet<QString> m_pathsThere;
    ReplayLosses m_losses;
    ForeignChanges m_touched;
    bool m_areAutoLinksTouched = false;
};
