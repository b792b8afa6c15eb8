#pragma once

#include <QtGlobal>

#include <functional>

class FileOperationWorker;
class QByteArray;
class QFile;

/** Bytes in one block of stored contents, and the slice of every loop over a file. */
constexpr qint64 BLOCK_SIZE = 10000000;

/** Reads the chains of blocks that hold the contents of internal files. Worker's thread. */
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

    explicit BlockStorage(FileOperationWorker &worker) : m_worker(worker) {}

    /** Writes a file's contents into an open target. */
    Result readInto(qint64 fileId, QFile &target, const AtBlock &atBlock = {});
    /** False, with the reason in the file, when not all can be written. */
    static bool writeAll(QFile &target, const char *bytes, qint64 length);

private:
    Result writeChain(qint64 firstId, qint64 size, QFile &target, const AtBlock &atBlock);
    Result read(qint64 id, QByteArray &data, qint64 &continueId);
    Result whyNothingWasRead() const;

    FileOperationWorker &m_worker;
};
