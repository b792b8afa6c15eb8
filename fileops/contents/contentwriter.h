#pragma once

#include "fileops/contents/blockchain.h"
#include "fileops/contents/filechecksums.h"

#include <QByteArray>
#include <QString>

#include <functional>

class FileOperationWorker;

/** What became of a file's contents in the database. */
struct StoredContents
{
    qint64 size = 0;
    qint64 modified = 0; ///< of the file, in seconds since 1970
    quint32 checksum = 0;
    bool isSnapshot = true; ///< false when the file was written to while it was read
};

/**
 * Cuts files into the blocks of a chain, within the running transaction of the worker and on its thread. One
 * block is held in memory, also between files.
 */
class ContentWriter
{
public:
    enum Outcome {
        Stored,
        Unreadable, ///< no regular file, or reading broke off
        Failed      ///< refused by the database, or stopped
    };
    /** Hears the bytes stored so far. */
    using AtBlock = std::function<void(qint64)>;

    explicit ContentWriter(FileOperationWorker &worker);

    /**
     * Stores a file as the chain that begins with `storageId`; an empty file makes no block. `known` may hold
     * what an earlier reading told, and spares hashing while the file is unchanged. Unless the answer is
     * Stored, what was written is to be rolled back. A file that is written to meanwhile fails while rows
     * are gathered.
     */
    Outcome store(const QString &path, qint64 storageId, const FileChecksum &known, StoredContents &stored,
                  const AtBlock &atBlock = {});

private:
    bool writeBlock(qint64 id, const BlockChain::NextId &askNextId, qint64 &nextId);
    bool isStill(const QString &path, const FileChecksum &known, qint64 storedSize) const;
    bool readStoredChecksum(qint64 storageId, qint64 size, quint32 &result);

    FileOperationWorker &m_worker;
    const BlockChain m_chain;
    QByteArray m_block;
};
