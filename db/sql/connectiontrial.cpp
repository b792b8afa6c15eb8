#include "db/sql/connectiontrial.h"

#include "app/settings/crashstack.h"
#include "db/sql/connections.h"

ConnectionTrial::ConnectionTrial(const DBDetails &details, QObject *parent)
    : QThread(parent), m_details(details)
{
}

ConnectionTrial::~ConnectionTrial()
{
    wait();
}

void ConnectionTrial::run()
{
    provideCrashStack();
    // Each its own name: one that was given up may go on beside the next.
    const QString name = QStringLiteral("trialConnection%1").arg(quintptr(this));
    const Connections::Result result = Connections::open(name, m_details);
    if (!result.isOpen)
        m_error = result.error;
    Connections::close(name);
}
