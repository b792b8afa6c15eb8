#pragma once

#include "app/settings/dbdetails.h"

#include <QSqlError>
#include <QThread>

/**
 * Finds out in a thread of its own whether a server lets somebody in, as this may take as long as the
 * time-outs of connections allow. Leaves nothing open. Deleting it waits for the end.
 */
class ConnectionTrial : public QThread
{
    Q_OBJECT

public:
    explicit ConnectionTrial(const DBDetails &details, QObject *parent = nullptr);
    ~ConnectionTrial() override;

    /** Why it failed; invalid after a success. Not to be asked before the end. */
    QSqlError error() const { return m_error; }

protected:
    void run() override;

private:
    DBDetails m_details;
    QSqlError m_error;
};
