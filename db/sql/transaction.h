#pragma once

#include <QString>
#include <QVector>

class BaseDBProvider;

/**
 * A transaction that rolls back in its destructor unless commit() succeeded. It borrows the provider, whose
 * signals tell of errors, and belongs to the thread of its connection (empty: the default one).
 */
class Transaction
{
public:
    explicit Transaction(BaseDBProvider &provider, const QString &connectionName = QString());
    ~Transaction();
    Transaction(const Transaction &) = delete;
    Transaction &operator=(const Transaction &) = delete;

    /** True from a begin that worked until commit or rollback. */
    bool isActive() const { return m_isActive; }
    /** A commit that fails is rolled back at once. */
    bool commit();
    void rollBack();

private:
    BaseDBProvider &m_provider;
    QString m_connectionName;
    bool m_isActive;
};

/**
 * A transaction of several providers on the default connection. What they have to tell of it waits for
 * BaseDBProvider::tellNews(), after the commit. Errors are told at once.
 */
class JointTransaction
{
public:
    JointTransaction(BaseDBProvider &leader, const QVector<BaseDBProvider *> &others);
    ~JointTransaction();
    JointTransaction(const JointTransaction &) = delete;
    JointTransaction &operator=(const JointTransaction &) = delete;

    bool isActive() const { return m_transaction.isActive(); }
    bool commit();

private:
    Transaction m_transaction;
    QVector<BaseDBProvider *> m_others;
    bool m_isCommitted = false;
};

/**
 * One item of a batch on the worker's connection: rolled back in the destructor unless release() was called.
 * When the way back fails, BaseDBProvider::isSavepointLost() tells the loop to end.
 */
class Savepoint
{
public:
    explicit Savepoint(BaseDBProvider &provider);
    ~Savepoint();
    Savepoint(const Savepoint &) = delete;
    Savepoint &operator=(const Savepoint &) = delete;

    /** True from a savepoint that was set until it is released or rolled back. */
    bool isActive() const { return m_isActive; }
    bool release();
    bool rollBack();

private:
    BaseDBProvider &m_provider;
    bool m_isActive;
};
