#pragma once

#include "fileops/exchange/quietstatements.h"

/**
 * A second database on the worker's connection, under the name of a schema of its own. It is detached with
 * the object, which has to outlive the transaction that works on both: within one, SQLite lets none go.
 */
class AttachedDatabase
{
public:
    enum Access {
        ReadWrite,
        ReadOnly ///< nothing is written to the file, not even the end of a change that another program broke
                 ///< off
    };

    /** The name stands in statements as it is. */
    AttachedDatabase(FileOperationWorker &worker, const QString &schema);
    ~AttachedDatabase();
    AttachedDatabase(const AttachedDatabase &) = delete;
    AttachedDatabase &operator=(const AttachedDatabase &) = delete;

    /** What an earlier one has left under the name goes first. False, for a reason, when it cannot be opened.
     */
    bool attach(const QString &path, Access access);
    /** Nobody has the file open afterwards. */
    bool detach();
    QString reason() const { return m_statements.reason(); }
    bool isBusy() const { return m_statements.isBusy(); }

private:
    FileOperationWorker &m_worker;
    QuietStatements m_statements;
    const QString m_schema;
    bool m_isAttached = false;
};
