#pragma once

#include "db/sql/basedbprovider.h"
#include "fileops/files/regularfile.h"
#include "fileops/pictures/imageloading.h"

#include <QByteArray>
#include <QHash>
#include <QVector>

#include <memory>

class BlockChain;

/**
 * Has pictures read out of the database or from the disk, and puts turned ones in their place. GUI thread,
 * default connection; the whole picture is in memory. It remembers what each picture was read from, so that
 * nothing is overwritten that somebody else has put there since.
 */
class ImageStore : public BaseDBProvider
{
    Q_OBJECT

public:
    using BaseDBProvider::BaseDBProvider;

    /** The picture is read by another process, meanwhile the window goes on. */
    std::unique_ptr<ImageLoading> load(qint64 fileId);
    /**
     * Writes the picture of a file that was loaded before, in the format of its name, with its thumbnail and
     * its record: all or nothing. The records that have changed go into `changedIds`: none for a picture that
     * is as it was, several when they name one file on the disk.
     */
    bool save(qint64 fileId, const QImage &picture, QVector<qint64> &changedIds);

private:
    /** Where a picture came from, to be found unchanged when it is written. */
    struct Origin
    {
        int internal = -1;
        qint64 storageId = 0; ///< the first block, or the id of the path
        qint64 size = 0;      ///< as recorded, of internal files
        qint64 checksum = 0;  ///< the same
        QString path;         ///< of external files
        FileStamp stamp;      ///< the same
    };
    /** What is to be written; no bytes for a picture that is as it was. */
    struct Writing
    {
        QByteArray bytes;
        QByteArray oldBytes;
        QByteArray thumbnail;
    };
    static bool isSame(const Origin &left, const Origin &right);

    bool readOrigin(qint64 fileId, Origin &origin);
    bool readUnchanged(qint64 fileId);
    StoredImage::State readBytes(Origin &origin, QByteArray &bytes);
    /** Loaded when the file on the disk may be read. */
    static StoredImage::State lookAt(const QString &path);
    BlockChain blockChain();
    bool readChain(const Origin &origin, QByteArray &bytes);

    bool prepare(qint64 fileId, const QImage &picture, Writing &writing);
    /** Keeps others from the record until the transaction ends; false when it is not as it was read. */
    bool lock(qint64 fileId);
    bool saveInternal(qint64 fileId, const Writing &writing);
    bool saveExternal(qint64 fileId, const Writing &writing, QVector<qint64> &changedIds);
    bool writeChain(const QByteArray &bytes, qint64 &firstId);
    bool nextBlockId(qint64 lastId, qint64 &id);
    bool replaceThumbnail(qint64 fileId, const QByteArray &png);
    bool updateFile(qint64 fileId, const QString &path, const Writing &writing);

    bool readRow(const QString &statement, QVariantList &values);

    QHash<qint64, Origin> m_origins;
};
