#pragma once

#include <QSqlError>

/**
 * A statement of an import failed, which ends the run, or the part of it that stands under a savepoint. It
 * does not leave this folder.
 */
class CriticalDMError
{
public:
    explicit CriticalDMError(const QSqlError &error) : m_error(error) {}

    const QSqlError &error() const { return m_error; }

private:
    QSqlError m_error;
};
