#include "app/running/runningdatabase.h"

#include "app/running/busname.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>

#ifdef VORNA_X11
#include <QX11Info>
#endif

namespace {

/**
 * What the user did last was done in another window, which is why a window manager would let this one stay
 * behind.
 */
void takeUsersTurn()
{
#ifdef VORNA_X11
    if (!QX11Info::isPlatformX11())
        return;
    const unsigned long now = QX11Info::getTimestamp();
    QX11Info::setAppTime(now);
    QX11Info::setAppUserTime(now);
#endif
}

} // namespace

RunningDatabase::RunningDatabase(QObject *parent) : QObject(parent)
{
    QDBusConnection::sessionBus().registerObject(BusName::objectPath, this,
                                                 QDBusConnection::ExportScriptableInvokables);
}

RunningDatabase::~RunningDatabase()
{
    setDatabase({});
    QDBusConnection::sessionBus().unregisterObject(BusName::objectPath);
}

void RunningDatabase::setDatabase(const QString &path)
{
    QDBusConnectionInterface *bus = QDBusConnection::sessionBus().interface();
    const QString name = BusName::ofDatabase(path);
    if (!bus || name == m_name)
        return;
    if (!m_name.isEmpty())
        bus->unregisterService(m_name);
    m_name = name;
    // Who has it open already answers first; when that one ends, this one does.
    if (!m_name.isEmpty())
        bus->registerService(m_name, QDBusConnectionInterface::QueueService);
}

bool RunningDatabase::showWindow(const QString &name, const QString &shellPath)
{
    if (m_name.isEmpty() || name != m_name)
        return false;
    takeUsersTurn();
    emit windowRequested(shellPath);
    return true;
}
