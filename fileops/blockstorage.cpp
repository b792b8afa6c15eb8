#include "fileops/blockstorage.h"

#include "fileops/fileoperationworker.h"

#include <QDebug>
#include <QFile>
#include <QSet>

bool BlockStorage::readInto(qint64 fileId, QFile &target)
{
    int internal = 0;
    qint64 size = 0;
    qint64 storageId = 0;
    if (!m_worker.readFileStorageInfo(fileId, internal, size, storageId))
        return false;
    if (internal != 1) {
        qDebug() << "*** Error: File is not internal; cannot extract it.";
        return false;
    }
    // An empty file owns no block; the id that was kept for it may have become another file's.
    if (size != 0 && !writeChain(storageId, target))
        return false;
    if (!target.exists()) {
        qDebug() << "File does not exist!";
        return false;
    }
    return true;
}

bool BlockStorage::writeChain(qint64 firstId, QFile &target)
{
    // A damaged chain that leads back into itself would fill the disk.
    QSet<qint64> seen;
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
    }
    return target.flush();
}
