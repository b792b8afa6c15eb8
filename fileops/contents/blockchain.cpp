#include "fileops/contents/blockchain.h"

#include "db/sql/basedbprovider.h"
#include "db/sql/sqltext.h"

BlockChain::BlockChain(const ProviderConnection &connection, const QString &schema)
    : m_connection(connection),
      m_select(QStringLiteral("SELECT info.continue_id, block.data FROM %1storage_info AS info, "
                              "%1storage AS block WHERE info.storage_id=block.storage_id "
                              "AND info.storage_id=?;")
                   .arg(schema.isEmpty() ? schema : schema + QLatin1Char('.')))
{
}

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
    QVariantList row;
    if (!m_connection.readRow(m_select, {storageId}, row))
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
