#pragma once

#include "core/providers/foreignchanges.h"
#include "db/undo/rowreader.h"

#include <QMap>

#include <functional>

class MainViewProvider;

/** What a replay could not write, as something else has been done to it since. */
struct ReplayLosses
{
    int files = 0;
    int tags = 0;
    int nodes = 0;
    int others = 0;

    bool isEmpty() const { return files + tags + nodes + others == 0; }
};

/**
 * Writes changes of an edit once more, or those that take it back. A row is written only when it stands as
 * the change found it, and only when what it names is there; what somebody else has put to use is not
 * removed. The rest of the changes is written all the same. Lives for one edit on the stack of its caller,
 * which has opened the transaction. GUI thread, default connection.
 */
class ChangeReplay : public RowReader
{
    Q_OBJECT

public:
    /** What it asks of the records, which are those of the database before the edit. */
    struct Records
    {
        std::function<bool(qint64 fileId)> hasFile;
        /** How many files have the tag. */
        std::function<int(qint64 tagId)> filesWith;
    };
    ChangeReplay(const AbstractQueryConstructor *constructor, MainViewProvider &files, const Records &records,
                 QObject *parent = nullptr);

    /** Within one transaction it may be called again. False when a statement failed. */
    bool run(const ChangeSet &changes);
    const ReplayLosses &losses() const { return m_losses; }
    /** The keys of what was written; its provider tells of the files. */
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
    void lose(const RowChange &change);
    void dropRows(const QSet<qint64> &ids, UndoTable table);
    bool write();
    bool removeRows(UndoTable table);
    bool insertRows(UndoTable table);
    bool updateRows(UndoTable table);
    bool writeLinks(const QVector<TagLinks> &links, bool areAdded);
    void note(const RowChange &change);
    Rows rowsOf(UndoTable table, bool (*isWanted)(const RowChange &)) const;

    MainViewProvider &m_files;
    Records m_records;
    QMap<UndoTable, RowImages> m_current;
    Rows m_rows;                           ///< those that are to be written
    QMap<UndoTable, QSet<qint64>> m_there; ///< of the rows that are named, those that are there
    QMap<UndoTable, QSet<qint64>> m_taken; ///< keys that something else has got meanwhile
    QSet<QString> m_pathsThere;
    QHash<qint64, int> m_unlinked; ///< from each tag; the records count these files still
    ReplayLosses m_losses;
    ForeignChanges m_touched;
    bool m_areAutoLinksTouched = false;
};
