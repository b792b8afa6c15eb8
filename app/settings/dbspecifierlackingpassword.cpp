#include "app/settings/dbspecifierlackingpassword.h"

#include "app/settings/constants.h"

#include <QDebug>

QString OldDBDetails::toString() const
{
    if (isNull)
        return QStringLiteral("OldDBDetails(NULL)");
    return QStringLiteral("%1:%2, %3").arg(host, QString::number(port), databaseName);
}

bool operator==(const OldDBDetails &left, const OldDBDetails &right)
{
    if (left.isNull || right.isNull)
        return left.isNull == right.isNull;
    return left.host == right.host && left.port == right.port && left.databaseName == right.databaseName &&
           left.user == right.user;
}

QDataStream &operator<<(QDataStream &stream, const OldDBDetails &details)
{
    return stream << details.isNull << details.host << qint32(details.port) << details.databaseName
                  << details.user << details.password;
}

QDataStream &operator>>(QDataStream &stream, OldDBDetails &details)
{
    OldDBDetails read;
    qint32 port = 0;
    stream >> read.isNull >> read.host >> port >> read.databaseName >> read.user >> read.password;
    read.port = port;
    // Half a record would name a server that nobody has chosen.
    details = stream.status() == QDataStream::Ok ? read : OldDBDetails();
    return stream;
}

DBSpecifierLackingPassword DBSpecifierLackingPassword::fromDetails(const DBDetails &details)
{
    DBSpecifierLackingPassword specifier;
    if (details.type() == Constants::localDatabase) {
        specifier.m_isNull = false;
        specifier.m_path = details.databaseName();
    } else if (details.type() == Constants::serverDatabase) {
        specifier.m_isNull = false;
        specifier.m_kind = Server;
        specifier.m_server =
            OldDBDetails{false, details.host(), details.port(), details.databaseName(), details.user(), {}};
    }
    return specifier;
}

DBDetails DBSpecifierLackingPassword::toDetails() const
{
    if (m_isNull)
        return {};
    if (m_kind == LocalPath)
        return DBDetails::local(m_path);
    return DBDetails(Constants::serverDatabase, m_server.host, m_server.port, m_server.databaseName,
                     m_server.user, QString());
}

QString DBSpecifierLackingPassword::toString() const
{
    if (m_isNull)
        return QStringLiteral("No database specified");
    if (m_kind == LocalPath)
        return QLatin1Char('\'') + m_path + QLatin1Char('\'');
    return m_server.toString();
}

bool operator==(const DBSpecifierLackingPassword &left, const DBSpecifierLackingPassword &right)
{
    if (left.isNull() || right.isNull())
        return left.isNull() == right.isNull();
    if (left.kind() != right.kind())
        return false;
    return left.kind() == DBSpecifierLackingPassword::LocalPath ? left.path() == right.path()
                                                                : left.server() == right.server();
}

QDataStream &operator<<(QDataStream &stream, const DBSpecifierLackingPassword &specifier)
{
    return stream << specifier.m_isNull << specifier.m_kind << specifier.m_path << specifier.m_server;
}

QDataStream &operator>>(QDataStream &stream, DBSpecifierLackingPassword &specifier)
{
    DBSpecifierLackingPassword read;
    stream >> read.m_isNull >> read.m_kind >> read.m_path >> read.m_server;
    const bool known = read.m_kind == DBSpecifierLackingPassword::LocalPath ||
                       read.m_kind == DBSpecifierLackingPassword::Server;
    // The text of the log is a given one, its line break included.
    if (!known)
        qDebug("ERROR deserialising DBSpecifier: Database specifier type not valid!\n");
    specifier = known && stream.status() == QDataStream::Ok ? read : DBSpecifierLackingPassword();
    return stream;
}
