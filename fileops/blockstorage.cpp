#include "fileops/blockstorage.h"

#include "core/filekind.h"
#include "fileops/fileoperationworker.h"

#include <QDebug>
#include <QFile>
#include <QSet>

bool BlockStorage::readInto(qint64 fileId, QFile &target, const AtBlock &atBlock)
{
    int internal = 0;
    qint64 size = 0;
    qint64 storageId = 0;
    if (!m_worker.readFileStorageInfo(fileId, internal, size, storageId))
        return false;
    if (internal != FileKind::internal) {
        qDebug() << "*** Error: File is not internal; cannot extract it.";
        return false;
    }
    // An empty file owns no block; the id that was kept for it may have become another file's.
    if (size != 0 && !writeChain(storageId, size, target, atBlock))
        return false;
    // By its name: of an open file that was removed the descriptor still knows.
    if (!QFile::exists(target.fileName())) {
        qDebug() << "File does not exist!";
        return false;
    }
    return true;
}

bool BlockStorage::writeChain(qint64 firstId, qint64 size, QFile &target, const AtBlock &atBlock)
{
    // A damaged chain that leads back into itself would fill the disk.
    QSet<qint64> seen;
    qint64 done = 0;
    for (qint64 id = firstId; id > 0;) {
        if (m_worker.shouldEnd()) {
            target.close();
            return false;
        }
        QByteArray data;
        qint64 continueId = 0;
        if (seen.contains(id) || !m_worker.readBlock(id, data, continueId))
            return false;
        if (target.write(data) != data.size()) {
            qDebug() << "extractInternalToFile(): Error writing to file.";
            return false;
        }
        seen.insert(id);
        id = continueId;
        done += data.size();
        if (atBlock)
            atBlock(done, size);
    }
    // More is right where a size did not fit its column, fewer is a chain that lost its end.
    return done >= size && target.flush();
}
