#pragma once

#include "db/sql/tabledata.h"

#include <QSqlError>
#include <QString>
#include <QVariant>

class FileOperationWorker;

/**
 * Statements of an operation that has two databases: that the other one is full or damaged is no error of the
 * open one, which the window would tell of in words about that. Who runs them says what failed. Each is kept
 * prepared, "?" stands for a value. On the worker's thread; the worker is borrowed.
 */
class QuietStatements
{
public:
    explicit QuietStatements(FileOperationWorker &worker) : m_worker(worker) {}

    bool run(const QString &statement, const QVariantList &values = {});
    /** The holder of the table owns the rows. */
    bool read(const QString &statement, TableData &table, const QVariantList &values = {});
    /** The first value of the first row, 0 when it is none; false, too, without a row. */
    bool readNumber(const QString &statement, qint64 &number, const QVariantList &values = {});

    /** Of the last statement; no valid one after success. */
    const QSqlError &error() const { return m_error; }
    /** The same in the database's own words. */
    QString reason() const;
    /** After it the transaction cannot go on: the disk is full or failing, or another program in the way. */
    bool isFatal() const;
    /** Whether the lock of another program was in the way. */
    bool isBusy() const;

private:
    FileOperationWorker &m_worker;
    QSqlError m_error;
};
