#pragma once

#include "db/undo/changeset.h"

#include <QHash>
#include <QObject>
#include <QSet>
#include <QVector>

#include <functional>

class DatabaseManger;

/**
 * Files and tags that went while steps still name them, other than by a step: deleted, or removed by others.
 * Their ids may have been given to new ones since, which older steps do not mean. Owned by the history.
 */
class GoneRecords : public QObject
{
    Q_OBJECT

public:
    using FileIds = std::function<QSet<qint64>()>;
    /** Asked for the files that steps name, before all is read anew. */
    GoneRecords(DatabaseManger *manager, const FileIds &namedFiles, QObject *parent);

    /** A number for a step that is made now. */
    qint64 nextStep() { return ++m_lastStep; }
    /** Nothing is named any more. */
    void clear();
    /** Around all that the window edits itself; `isStep` when what went can come back. */
    void editBegins();
    void editEnded(bool isStep);
    /** What of a step still means what it did; how many files and tags it has lost. */
    EditStep living(const EditStep &step, qint64 number, int &lostFiles, int &lostTags) const;

private:
    /** By id, until which step they were meant. */
    using Marks = QHash<qint64, qint64>;
    using Identities = QHash<qint64, QString>;

    void mark(Marks &marks, const QVector<qint64> &ids);
    void noteAll();
    void compareAll();
    Identities files() const;
    Identities tags() const;

    DatabaseManger *m_manager;
    FileIds m_namedFiles;
    qint64 m_lastStep = 0;
    bool m_isEditing = false;
    Marks m_files;
    Marks m_tags;
    QVector<qint64> m_tagsOfEdit;
    Identities m_filesBefore; ///< while all is read anew
    Identities m_tagsBefore;
};
