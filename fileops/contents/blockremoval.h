#pragma once

#include "db/sql/providerconnection.h"

#include <QSet>
#include <QVariant>
#include <QVector>

/**
 * Takes the contents of internal files out of the database, within the caller's transaction and on its
 * thread. In a sound database each block is one file's. A damaged one may lead two files to one block, which
 * the other file keeps then, with all that follows. Whoever removes several files in one transaction uses one
 * object for all of them, as their records go last.
 *
 * No index tells which files use a block. In a small library those that several use are found at once; in a
 * large one the first files that go ask for their own blocks alone.
 */
class BlockRemoval
{
public:
    explicit BlockRemoval(const ProviderConnection &connection) : m_connection(connection) {}

    /** Of a file with these in its record; false when a statement failed. */
    bool removeBlocksOf(qint64 fileId, qint64 firstId, qint64 recordedSize);
    /** Of internal files that are not empty, all at once; false, too, when one of them is to be looked at by
     * itself, and what was removed is to be rolled back. */
    bool removeOrdinary(const QVector<qint64> &fileIds);

private:
    /** What one look at a chain tells. */
    struct Shape
    {
        qint64 lastId = 0;
        bool isOrdinary = false; ///< whole, of the recorded size, its ids in a row and nothing before them
    };
    /** `row`: number of blocks, the first, the last, those that exist, their bytes, what follows the block
     * before */
    static Shape shapeOf(qint64 firstId, qint64 recordedSize, const QVariantList &row);
    bool readShape(qint64 firstId, qint64 recordedSize, Shape &shape) const;
    bool lookAround();
    /** Whether nothing else leads to the blocks of an ordinary chain. */
    bool isUsedOnce(qint64 firstId, qint64 lastId, bool &isUsedOnce);
    bool readMeetings();
    bool hasMeeting(qint64 firstId, qint64 lastId) const;
    bool removeRange(qint64 firstId, qint64 lastId) const;
    bool removeOwn(qint64 fileId, qint64 firstId);
    /** The blocks of a chain in their order. */
    bool readChain(qint64 firstId, QVector<qint64> &blocks) const;
    /** Adds the blocks of a chain that other files start at, or other blocks lead to. */
    bool readShared(qint64 fileId, const QVector<qint64> &blocks, QSet<qint64> &shared) const;

    ProviderConnection m_connection;
    QSet<qint64> m_removedFiles;
    QSet<qint64> m_meetings; ///< blocks that more than one file or block leads to
    bool m_hasLooked = false;
    bool m_areMeetingsKnown = false;
};
