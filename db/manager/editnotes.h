#pragma once

#include "core/tagging/tagchange.h"
#include "db/undo/editrecord.h"

#include <QCoreApplication>

class RecordKeeper;
struct AdditionOutcome;
struct NodeRemovalPlan;

/**
 * Notes of an edit what it may change, so that it can be taken back, how it is called and what it comes to:
 * "Add tags to 3 files", "Letters added to 3 files". Whole texts, with the names that the records have when
 * it is asked. A bool is false when a row could not be read. Lives for one edit, on the stack.
 */
class EditNotes
{
    Q_DECLARE_TR_FUNCTIONS(EditNotes)

public:
    EditNotes(EditRecord &record, RecordKeeper &records) : m_record(record), m_records(records) {}

    // Before anything is written.
    /** How many files it changes. */
    int links(const TagChanges &changes);
    bool tagRenamed(qint64 tagId, const QString &name);
    bool tagDescribed(qint64 tagId);
    /** What was found out is all that it changes. */
    void tagsMerged(qint64 target, const QVector<qint64> &others, const ChangeSet &changes);
    bool tagsRemoved(const QVector<qint64> &tagIds);
    bool groupRenamed(qint64 groupId, const QString &name);
    bool groupsRemoved(const QVector<qint64> &groupIds);
    bool groupsChanged(const QVector<qint64> &groupIds);
    bool nodesMove(const QVector<qint64> &nodeIds);
    bool nodesRemoved(const NodeRemovalPlan &plan);
    bool nodeChanged(qint64 nodeId, const QString &column, bool isOn);
    bool relationsAdded(const QStringList &paths, const QVector<qint64> &tagIds,
                        const QString &newName = QString());
    bool relationsRemoved(const QStringList &removed);
    bool fileRenamed(qint64 fileId, const QString &name);
    bool fileDescribed(qint64 fileId);
    /** The edit is one that is asked about, and is not taken back. */
    void forget() { m_record.forget(); }

    // Once the ids are known.
    /** The same with what was really changed. */
    int linksDone(const TagChanges &changes);
    /** Added files are no step; what they gave to others by their contents is. */
    void filesAdded(const AdditionOutcome &outcome);
    void tagsMade(const QVector<qint64> &tagIds);
    void tagAdded(const QString &name, int files);
    void groupAdded(qint64 groupId, const QString &name);
    void groupJoined(const QVector<qint64> &tagIds);
    /** The name of the first tag, which the records may not know yet. */
    void nodesAdded(const QVector<qint64> &nodeIds, const QVector<qint64> &tagIds,
                    const QString &newName = QString());

private:
    QVector<qint64> filesWith(const QVector<qint64> &fileIds, qint64 tagId, bool isThere) const;
    void tellLinks(const QVector<qint64> &linked, const QVector<qint64> &unlinked, int files);
    QString tag(qint64 tagId) const;
    QString group(qint64 groupId) const;
    QString nameOf(qint64 fileId) const;

    EditRecord &m_record;
    RecordKeeper &m_records;
};
