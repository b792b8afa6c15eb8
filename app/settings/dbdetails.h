#pragma once

#include <QDataStream>
#include <QMetaType>
#include <QQueue>
#include <QString>

/**
 * The full description of a connection. A plain value; the password is in clear, so that records that go into
 * the settings are DBSpecifierLackingPassword instead.
 */
class DBDetails
{
public:
    DBDetails() = default;
    DBDetails(int type, const QString &host, int port, const QString &databaseName, const QString &user,
              const QString &password);

    /** The details of the local database at a path. */
    static DBDetails local(const QString &path);

    /** 1 a local database, 2 a server database, 0 none. */
    int type() const { return m_type; }
    QString host() const { return m_host; }
    int port() const { return m_port; }
    /** The file path, or the name on the server. */
    QString databaseName() const { return m_databaseName; }
    QString user() const { return m_user; }
    QString password() const { return m_password; }

    /** The same details with another password. */
    DBDetails withPassword(const QString &password) const;

private:
    int m_type = 0;
    QString m_host;
    int m_port = 0;
    QString m_databaseName;
    QString m_user;
    QString m_password;
};

/** Equal kinds with equal fields of their kind; passwords do not count. */
bool operator==(const DBDetails &left, const DBDetails &right);
bool operator!=(const DBDetails &left, const DBDetails &right);

QDataStream &operator<<(QDataStream &stream, const DBDetails &details);
QDataStream &operator>>(QDataStream &stream, DBDetails &details);

Q_DECLARE_METATYPE(DBDetails)
Q_DECLARE_METATYPE(QQueue<DBDetails>)
