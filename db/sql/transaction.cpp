#include "db/sql/transaction.h"

#include "db/sql/basedbprovider.h"

Transaction::Transaction(BaseDBProvider &provider, const QString &connectionName)
    : m_provider(provider),
      m_connectionName(connectionName),
      m_isActive(provider.beginTransaction(connectionName))
{
}

Transaction::~Transaction()
{
    rollBack();
}

bool Transaction::commit()
{
    if (!m_isActive)
        return false;
    if (!m_provider.commitTransaction(m_connectionName)) {
        rollBack();
        return false;
    }
    m_isActive = false;
    return true;
}

void Transaction::rollBack()
{
    if (m_isActive)
        m_provider.rollbackTransaction(m_connectionName);
    m_isActive = false;
}

JointTransaction::JointTransaction(BaseDBProvider &leader, const QVector<BaseDBProvider *> &others)
    : m_transaction(leader), m_others(others)
{
    for (BaseDBProvider *provider : qAsConst(m_others))
        provider->joinTransaction();
}

JointTransaction::~JointTransaction()
{
    for (BaseDBProvider *provider : qAsConst(m_others))
        provider->leaveTransaction(m_isCommitted);
}

bool JointTransaction::commit()
{
    m_isCommitted = m_transaction.commit();
    return m_isCommitted;
}

Savepoint::Savepoint(BaseDBProvider &provider) : m_provider(provider), m_isActive(provider.setSavepoint()) {}

Savepoint::~Savepoint()
{
    rollBack();
}

bool Savepoint::release()
{
    if (!m_isActive || !m_provider.releaseSavepoint())
        return false;
    m_isActive = false;
    return true;
}

bool Savepoint::rollBack()
{
    if (!m_isActive)
        return false;
    m_isActive = false;
    return m_provider.rollbackToSavepoint();
}
