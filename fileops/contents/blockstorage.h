#pragma once

#include "fileops/contents/blockchain.h"

#include <functional>

class FileOperationWorker;
class QFile;

/** Writes the contents of internal files into files on the disk. Worker's thread. */
class BlockStorage
{
public:
    /** Hears the bytes written so far, and those of the whole file as recorded. */
    using AtBlock = std::function<void(qint64 done, qint64 total)>;

    enum Result {
        Written,
        Unreadable, ///< not internal, a block is missing or damaged, or there are fewer bytes than recorded
        Failed      ///< the target or the database refuses, the target is gone, or a stop or cancel
    };

    explicit BlockStorage(FileOperationWorker &worker);

    /** Writes a file's contents into an open target. */
    Result readInto(qint64 fileId, QFile &target, const AtBlock &atBlock = {});
    /** False, with the reason in the file, when not all can be written. */
    static bool writeAll(QFile &target, const char *bytes, qint64 length);

private:
    Result writeChain(qint64 firstId, qint64 size, QFile &target, const AtBlock &atBlock);
    Result readNext(BlockChain::Walk &walk);
    Result whyNothingWasRead() const;

    FileOperationWorker &m_worker;
    const BlockChain m_chain;
};
