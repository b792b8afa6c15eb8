#pragma once

#include "fileops/contents/blockchain.h"

#include <QByteArray>
#include <QString>

#include <functional>

class FileOperationWorker;

/**
 * Compares the bytes of two files that a database and its import source know, inside of the databases or on
 * the disk, a block of each at a time in memory. Worker's thread.
 */
class ContentComparison
{
public:
    enum Result { Same, Different, Unreadable };

    struct Side
    {
        bool isOfSource = false;
        bool isInternal = false;
        qint64 storageId = 0; ///< of an internal file
        qint64 size = 0;      ///< as recorded
        QString path;         ///< of an external one
    };

    /** The source's own file is not read as an external one, as that would drop the locks on it. */
    ContentComparison(FileOperationWorker &worker, const QString &sourcePath);

    /** A stop or cancel answers Different. */
    Result compare(const Side &left, const Side &right) const;
    /** The fingerprint of a file's bytes; -1 when they cannot be read. */
    qint64 checksumOf(const Side &side) const;
    /** What tells contents apart for sure; none when they cannot be read. */
    QByteArray hashOf(const Side &side) const;

private:
    class Stream;

    /** Throws when others lock the database. */
    void stopAtLock() const;
    /** Hands all bytes on; false when they cannot be read to their end. */
    bool readAll(const Side &side, const std::function<void(const char *, int)> &take) const;

    FileOperationWorker &m_worker;
    const QString m_sourcePath;
    const BlockChain m_ownChain;
    const BlockChain m_sourceChain;
};
