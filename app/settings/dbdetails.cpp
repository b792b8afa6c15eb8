#include "app/settings/dbdetails.h"

#include "app/settings/constants.h"

DBDetails::DBDetails(int type, const QString &host, int port, const QString &databaseName,
                     const QString &user, const QString &password)
    : m_type(type),
      m_host(host),
      m_port(port),
      m_databaseName(databaseName),
      m_user(user),
      m_password(password)
{
}

DBDetails DBDetails::local(const QString &path)
{
    return DBDetails(Constants::localDatabase, QString(), 0, path, QString(), QString());
}

DBDetails DBDetails::withPassword(const QString &password) const
{
    DBDetails details = *this;
    details.m_password = password;
    return details;
}

bool operator==(const DBDetails &left, const DBDetails &right)
{
    if (left.type() != right.type() || left.databaseName() != right.databaseName())
        return false;
    // A path says all of a local database.
    if (left.type() != Constants::serverDatabase)
        return true;
    return left.host() == right.host() && left.port() == right.port() && left.user() == right.user();
}

bool operator!=(const DBDetails &left, const DBDetails &right)
{
    return !(left == right);
}

QDataStream &operator<<(QDataStream &stream, const DBDetails &details)
{
    return stream << qint32(details.type()) << details.host() << qint32(details.port())
                  << details.databaseName() << details.user() << details.password();
}

QDataStream &operator>>(QDataStream &stream, DBDetails &details)
{
    // Numbers have a fixed width in the stream, whatever an int is where it was written.
    qint32 type = 0;
    qint32 port = 0;
    QString host;
    QString databaseName;
    QString user;
    QString password;
    stream >> type >> host >> port >> databaseName >> user >> password;
    details = DBDetails(type, host, port, databaseName, user, password);
    return stream;
}
