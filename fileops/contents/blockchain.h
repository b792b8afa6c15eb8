#pragma once

#include "db/sql/providerconnection.h"

#include <QByteArray>
#include <QSet>

#include <functional>

/** Bytes in one block of stored contents, and the slice of every loop over a file. */
constexpr qint64 BLOCK_SIZE = 10000000;

/**
 * The contents of internal files: each a chain of blocks, of which `storage` has the bytes and `storage_info`
 * the way to the next one. All that reads or writes these tables goes through here, on the connection that it
 * is told and on its thread; only copies from one database into another stay within SQLite. Transactions are
 * the caller's: what fails on the way is to be rolled back.
 */
class BlockChain
{
public:
    /** Gives the id for a block to come; false when there is none to be had. */
    using NextId = std::function<bool(qint64 &id)>;

    /**
     * Goes along one chain, with one block in memory. What ends a long walk, a cancel or a full disk, is
     * asked between the blocks by whoever walks.
     */
    class Walk
    {
    public:
        /** An empty file has no block: the id that was kept for it may have become another file's. */
        Walk(const BlockChain &chain, qint64 firstId, qint64 recordedSize)
            : m_chain(chain), m_nextId(recordedSize == 0 ? 0 : firstId)
        {
        }

        bool hasNext() const { return m_nextId > 0; }
        /** False when no block can be read: one is missing or refused, or the chain returns into itself. */
        bool readNext();
        /** The block that was read last. */
        const QByteArray &block() const { return m_block; }
        /** The bytes of all blocks so far. */
        qint64 done() const { return m_done; }

    private:
        const BlockChain &m_chain;
        QByteArray m_block;
        QSet<qint64> m_seen;
        qint64 m_nextId;
        qint64 m_done = 0;
    };

    /** Of the open database, or of one that is attached to its connection under the name of the schema. */
    explicit BlockChain(const ProviderConnection &connection,
                        const QString &schema = QString());

    /**
     * Stores one block and what follows it: `nextId` becomes what `askNextId` gives, or 0 where nobody is to
     * be asked, which ends the chain.
     */
    bool insertBlock(const QByteArray &data, qint64 storageId, const NextId &askNextId, qint64 &nextId) const;
    /** Ends a chain with a block that had been followed by one more. */
    bool endWith(qint64 storageId) const;

private:
    bool readBlock(qint64 storageId, QByteArray &data, qint64 &continueId) const;

    ProviderConnection m_connection;
    QString m_select;
};

namespace Database {
/** Stores one block on the default connection; `nextId` counts only with `hasNext`. */
bool writeBlock(const QByteArray &data, qint64 id, qint64 nextId, bool hasNext);
} // namespace Database
