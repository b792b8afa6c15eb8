#pragma once

#include <QtGlobal>

#include <functional>

class FileOperationWorker;
class QFile;

/** Bytes in one block of stored contents, and the slice of every loop over a file. */
constexpr qint64 BLOCK_SIZE = 10000000;

/** Reads the chains of blocks that hold the contents of internal files. Worker's thread. */
class BlockStorage
{
public:
    /** Hears the bytes written so far, and those of the whole file as recorded. */
    using AtBlock = std::function<void(qint64 done, qint64 total)>;

    explicit BlockStorage(FileOperationWorker &worker) : m_worker(worker) {}

    /**
     * Writes a file's contents into an open target. False when the file is not internal, a block is missing,
     * there are fewer bytes than recorded, writing fails, the target is gone at the end, or on a stop or
     * cancel, which also closes the target.
     */
    bool readInto(qint64 fileId, QFile &target, const AtBlock &atBlock = {});

private:
    bool writeChain(qint64 firstId, qint64 size, QFile &target, const AtBlock &atBlock);

    FileOperationWorker &m_worker;
};
