#pragma once

#include <QString>
#include <QUrl>

class QNetworkAccessManager;
class QNetworkReply;

/** The host that tells of new versions, hands them out and takes messages. Over HTTPS alone. GUI thread. */
namespace UpdateServer {
constexpr int usualPatience = 20000; // milliseconds

/** Takes the place of the host that the build names, for a test; "name" or "name:port". */
void setAddress(const QString &address, int patience = usualPatience);
/** Empty when there is no server: then no request is made. */
QUrl url(const QString &path);

/**
 * Asks for something; certificates and redirections are taken by the book, none leads away from HTTPS. The
 * reply ends as cancelled once nothing has come for too long.
 */
QNetworkReply *get(QNetworkAccessManager &network, const QUrl &url);
/** The same for an answer of a few words: one that is long, or has not ended after the patience, is cut off.
 */
QNetworkReply *getWords(QNetworkAccessManager &network, const QUrl &url);
} // namespace UpdateServer
