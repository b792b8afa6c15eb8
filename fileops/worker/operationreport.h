#pragma once

#include "fileops/worker/fileoperation.h"
#include "fileops/worker/operationshortfall.h"

#include <QCoreApplication>
#include <functional>

/**
 * Gathers what fails while an operation runs: a thousand files may fail for one cause, which is told once and
 * at the end, together with how many were done. Owned by the worker, on its thread.
 */
class OperationReport
{
    Q_DECLARE_TR_FUNCTIONS(OperationReport)

public:
    void begin(FileOperationType type);
    void note(const QSqlError &error);
    /** How many of how many files are done; of none in all nothing is said. */
    void setDone(int done, int total);
    /** Other words than those of the numbers. */
    void setOutcome(const QString &outcome) { m_outcome = outcome; }

    bool hasErrors() const { return !m_errors.isEmpty(); }
    bool holds(const std::function<bool(const QSqlError &)> &kind) const;
    /** Whether there is anything to tell; `isCanceled` says that somebody wanted it to end. */
    bool isShort(bool isCanceled) const;
    OperationShortfall shortfall() const;

private:
    QString outcome() const;

    FileOperationType m_type = FileOperationType::UnusedOperation;
    QVector<QSqlError> m_errors;
    QString m_outcome;
    int m_done = 0;
    int m_total = 0;
};
