#pragma once

#include "db/undo/rowreader.h"

/**
 * Finds out what makes one tag of several: the links of files, the places in groups, nodes and relationships
 * of all go to the one that stays, and so does a description where that has none; the others go. It only
 * reads, all of it from the database, within the transaction in which a ChangeReplay writes what it found.
 */
class TagMerger : public RowReader
{
    Q_OBJECT

public:
    using RowReader::RowReader;

    /**
     * Adds to the set what is to be written. Others that are not there any more are left out, and where the
     * target is gone there is nothing to merge. False when a statement failed.
     */
    bool read(qint64 target, const QVector<qint64> &others, ChangeSet &set);

private:
    /** Leaves those of the others that are there. */
    bool readTags(QVector<qint64> &others, ChangeSet &set);
    bool readGroups(const QVector<qint64> &others, ChangeSet &set);
    bool readRelations(const QVector<qint64> &others, ChangeSet &set);
    bool readFiles(const QVector<qint64> &others, ChangeSet &set);

    qint64 m_target = 0;
};
