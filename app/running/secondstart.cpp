#include "app/running/secondstart.h"

#include "app/running/busname.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusReply>

namespace {
// One that is reading a large database answers when it is done.
constexpr int patienceMilliseconds = 10000;
} // namespace

bool SecondStart::isHandedOver(const QString &databasePath, const QString &shellPath)
{
    const QString name = BusName::ofDatabase(databasePath);
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (name.isEmpty() || !bus.isConnected())
        return false;
    QDBusMessage call = QDBusMessage::createMethodCall(name, BusName::objectPath, BusName::interfaceName,
                                                       BusName::showMethod);
    call.setAutoStartService(false);
    call << name << shellPath;
    const QDBusReply<bool> reply = bus.call(call, QDBus::Block, patienceMilliseconds);
    return reply.isValid() && reply.value();
}
