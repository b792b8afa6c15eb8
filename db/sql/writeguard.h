#pragma once

/** Asked in each transaction of the window on a local database, once it holds the write lock. */
class WriteGuard
{
public:
    virtual ~WriteGuard() = default;

    /** False when the transaction must not go on; why, the guard tells itself. */
    virtual bool mayWrite() = 0;
    /** A transaction was rolled back. */
    virtual void changesUndone() = 0;
};
