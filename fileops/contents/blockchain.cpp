#include "fileops/contents/blockchain.h"

#include "db/sql/basedbprovider.h"
#include "db/sql/sqltext.h"

namespace {
/** Deletes what belongs to the blocks of one chain, found link by link: other chains may lie in between. */
QString deleteChainStatement(const QString &table)
{
    return QStringLiteral("WITH RECURSIVE chain(block_id) AS ("
                          "SELECT storage_id FROM files WHERE file_id=? AND internal=1 AND file_size<>0 "
                          "UNION SELECT storage_info.continue_id FROM storage_info, chain "
                          "WHERE storage_info.storage_id=chain.block_id AND storage_info.continue_id>0) "
                          "DELETE FROM %1 WHERE storage_id IN (SELECT block_id FROM chain);")
        .arg(table);
}
} // namespace

bool BlockChain::Walk::readNext()
{
    // Two blocks at a time are twice the memory.
    m_block.clear();
    // A damaged chain that leads back into itself would fill the disk.
    if (!hasNext() || m_seen.contains(m_nextId))
        return false;
    m_seen.insert(m_nextId);
    if (!m_chain.readBlock(m_nextId, m_block, m_nextId))
        return false;
    m_done += m_block.size();
    return true;
}

bool BlockChain::readBlock(qint64 storageId, QByteArray &data, qint64 &continueId) const
{
    static const QString select =
        QStringLiteral("SELECT storage_info.continue_id, storage.data FROM storage_info, storage "
                       "WHERE storage_info.storage_id=storage.storage_id AND storage_info.storage_id=?;");
    QVariantList row;
    if (!m_connection.readRow(select, {storageId}, row))
        return false;
    continueId = row.at(0).toLongLong();
    data = row.at(1).toByteArray();
    return true;
}

bool BlockChain::insertBlock(const QByteArray &data, qint64 storageId, const NextId &askNextId,
                             qint64 &nextId) const
{
    const QString id = QString::number(storageId);
    const QString block = QStringLiteral("INSERT INTO storage (storage_id,data) VALUES (%1, :FILE);");
    const QString link = QStringLiteral("INSERT INTO storage_info (storage_id,continue_id) VALUES (%1, %2);");
    if (!m_connection.runWithBlob(SqlText::fill(block, {id}), data, QStringLiteral(":FILE")))
        return false;
    // Only now: where ids are the highest in use plus one, it would else be this block's own.
    nextId = 0;
    if (askNextId && !askNextId(nextId))
        return false;
    return m_connection.run(SqlText::fill(link, {id, QString::number(nextId)}));
}

bool BlockChain::endWith(qint64 storageId) const
{
    return m_connection.run(
        SqlText::fill(QStringLiteral("UPDATE storage_info SET continue_id=0 WHERE storage_id=%1;"),
                      {QString::number(storageId)}));
}

bool BlockChain::removeBlocksOf(qint64 fileId) const
{
    static const QString deleteBlocks = deleteChainStatement(QStringLiteral("storage"));
    static const QString deleteLinks = deleteChainStatement(QStringLiteral("storage_info"));
    return m_connection.runPrepared(deleteBlocks, {fileId}) &&
           m_connection.runPrepared(deleteLinks, {fileId});
}

bool Database::writeBlock(const QByteArray &data, qint64 id, qint64 nextId, bool hasNext)
{
    BaseDBProvider provider(nullptr);
    const auto askNextId = [nextId](qint64 &following) {
        following = nextId;
        return true;
    };
    qint64 following = 0;
    return BlockChain(ProviderConnection(provider))
        .insertBlock(data, id, hasNext ? BlockChain::NextId(askNextId) : nullptr, following);
}
