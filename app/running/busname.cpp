#include "app/running/busname.h"

#include <QCryptographicHash>
#include <QFile>
#include <QGuiApplication>

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#endif

namespace {

/** A window on a display that the user does not sit at is of no use to him. */
QByteArray display()
{
    if (QGuiApplication::platformName().startsWith(QLatin1String("wayland")))
        return "wayland " + qgetenv("WAYLAND_DISPLAY");
    const QByteArray name = qgetenv("DISPLAY");
    const int screen = name.lastIndexOf('.');
    return screen > name.lastIndexOf(':') ? name.left(screen) : name;
}

} // namespace

QString BusName::ofDatabase(const QString &path)
{
#ifdef Q_OS_UNIX
    struct stat status
    {
    };
    if (path.isEmpty() || stat(QFile::encodeName(path).constData(), &status) != 0 || !S_ISREG(status.st_mode))
        return {};
    const QByteArray identity = QByteArray::number(static_cast<qulonglong>(status.st_dev)) + ' ' +
                                QByteArray::number(static_cast<qulonglong>(status.st_ino)) + ' ' + display();
    // A letter first: no part of such a name may begin with a digit.
    return QStringLiteral("com.tallowfen.vorna.d") +
           QString::fromLatin1(QCryptographicHash::hash(identity, QCryptographicHash::Sha1).toHex());
#else
    Q_UNUSED(path)
    return {};
#endif
}
