#include "fileops/contents/contentwriter.h"

#include "fileops/files/datachecksum.h"
#include "fileops/files/regularfile.h"
#include "fileops/worker/fileoperationworker.h"

#include <QDebug>

ContentWriter::ContentWriter(FileOperationWorker &worker)
    : m_worker(worker), m_chain(ProviderConnection(worker, worker.connectionName()))
{
}

ContentWriter::Outcome ContentWriter::store(const QString &path, qint64 storageId, const FileChecksum &known,
                                            StoredContents &stored, const AtBlock &atBlock)
{
    RegularFile source;
    if (!source.open(path))
        return Unreadable;
    const bool isKnown = known.isOf(source.stamp());
    const BlockChain::NextId askNextId = [this](qint64 &id) { return m_worker.nextStorageId(id); };
    DataChecksum checksum;
    qint64 blockId = storageId;
    qint64 lastId = 0;
    bool hasNext = true;
    // Some files of the system name no size and have contents all the same.
    const qint64 length = source.size() > 0 ? source.size() : BLOCK_SIZE;
    m_block.reserve(BLOCK_SIZE);
    while (hasNext) {
        if (m_worker.shouldEnd()) {
            qDebug("FileOperationWorker::addFilesList() - stopped! Exiting.");
            return Failed;
        }
        const qint64 wanted = qMin(BLOCK_SIZE, length - stored.size);
        m_block.resize(int(wanted));
        const qint64 count = source.read(m_block.data(), wanted);
        // What is gathered of it can be taken back with all the others only.
        if (count < 0)
            return m_worker.areRowsWaiting() && stored.size > 0 ? Failed : Unreadable;
        if (count == 0) {
            qDebug("Error! Zero bytes read.");
            break;
        }
        m_block.resize(int(count));
        if (!isKnown)
            checksum.update(m_block.constData(), count);
        stored.size += count;
        // A read that came short has met the end of a file that shrank meanwhile.
        hasNext = count == wanted && stored.size < length;
        lastId = blockId;
        if (!writeBlock(lastId, hasNext ? askNextId : nullptr, blockId)) {
            qDebug("Inserting block failed.");
            return Failed;
        }
        if (atBlock)
            atBlock(stored.size);
    }
    const bool isShorter = hasNext && lastId > 0;
    if (isShorter && (m_worker.areRowsWaiting() || !m_chain.endWith(lastId)))
        return Failed;
    stored.modified = source.modified();
    stored.isSnapshot = source.isAsOpened();
    stored.checksum = isKnown ? known.checksum : checksum.take();
    // Written to while it was read: what was told before is no longer sure to be what was stored.
    const bool isSure = !isKnown || isStill(path, known, stored.size);
    const bool isReadable = !m_worker.areRowsWaiting();
    return isSure || (isReadable && readStoredChecksum(storageId, stored.size, stored.checksum)) ? Stored
                                                                                                 : Failed;
}

bool ContentWriter::writeBlock(qint64 id, const BlockChain::NextId &askNextId, qint64 &nextId)
{
    if (!m_worker.areRowsWaiting())
        return m_chain.insertBlock(m_block, id, askNextId, nextId);
    nextId = 0;
    return (!askNextId || askNextId(nextId)) &&
           m_worker.insertRows(QStringLiteral("INSERT INTO storage (storage_id,data)"), 2, {id, m_block}) &&
           m_worker.insertRows(QStringLiteral("INSERT INTO storage_info (storage_id,continue_id)"), 2,
                               {id, nextId});
}

bool ContentWriter::isStill(const QString &path, const FileChecksum &known, qint64 storedSize) const
{
    return storedSize == known.size && known.isOf(RegularFile::stampOf(path));
}

bool ContentWriter::readStoredChecksum(qint64 storageId, qint64 size, quint32 &result)
{
    DataChecksum checksum;
    BlockChain::Walk walk(m_chain, storageId, size);
    while (walk.done() < size && walk.hasNext()) {
        if (!walk.readNext() || walk.block().isEmpty())
            return false;
        checksum.update(walk.block().constData(), walk.block().size());
    }
    result = checksum.take();
    return true;
}
