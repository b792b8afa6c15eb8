#pragma once

#include "app/settings/dbdetails.h"

#include <QDataStream>
#include <QMetaType>
#include <QQueue>
#include <QString>

/** A server without its kind and without its password, as an entry of the recent list holds it. */
struct OldDBDetails
{
    bool isNull = true;
    QString host;
    int port = 0;
    QString databaseName;
    QString user;
    QString password;

    QString toString() const;
};

bool operator==(const OldDBDetails &left, const OldDBDetails &right);
QDataStream &operator<<(QDataStream &stream, const OldDBDetails &details);
QDataStream &operator>>(QDataStream &stream, OldDBDetails &details);

/** One entry of the recent databases list: a local path or a server, never a password. A plain value. */
class DBSpecifierLackingPassword
{
public:
    enum Kind : qint16 { LocalPath = 0, Server = 1 };

    DBSpecifierLackingPassword() = default;

    /** Drops the password; details whose type is neither 1 nor 2 give a null entry. */
    static DBSpecifierLackingPassword fromDetails(const DBDetails &details);

    /** The details of this entry with an empty password; those of a null entry have type 0. */
    DBDetails toDetails() const;

    bool isNull() const { return m_isNull; }
    qint16 kind() const { return m_kind; }
    QString path() const { return m_path; }
    OldDBDetails server() const { return m_server; }

    /** "No database specified", the path in single quotes, or the text of the server. */
    QString toString() const;

private:
    friend QDataStream &operator<<(QDataStream &stream, const DBSpecifierLackingPassword &specifier);
    friend QDataStream &operator>>(QDataStream &stream, DBSpecifierLackingPassword &specifier);

    bool m_isNull = true;
    qint16 m_kind = LocalPath;
    QString m_path;
    OldDBDetails m_server;
};

bool operator==(const DBSpecifierLackingPassword &left, const DBSpecifierLackingPassword &right);
QDataStream &operator<<(QDataStream &stream, const DBSpecifierLackingPassword &specifier);
/** An entry of an unknown kind is read as a null one, with a line in the log. */
QDataStream &operator>>(QDataStream &stream, DBSpecifierLackingPassword &specifier);

Q_DECLARE_METATYPE(DBSpecifierLackingPassword)
Q_DECLARE_METATYPE(QQueue<DBSpecifierLackingPassword>)
