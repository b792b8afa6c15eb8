#include "net/updateserver.h"

#include "app/settings/constants.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QTimer>

namespace {

constexpr int mostRedirections = 5;
constexpr qint64 longestWords = 4096;
constexpr qint64 mostBuffered = 1024LL * 1024;

struct Server
{
    QString address = QStringLiteral(VORNA_UPDATE_SERVER);
    int patience = UpdateServer::usualPatience;
};

Server &server()
{
    static Server instance;
    return instance;
}

} // namespace

namespace UpdateServer {

void setAddress(const QString &address, int patience)
{
    server() = {address, patience};
}

QUrl url(const QString &path)
{
    if (server().address.isEmpty())
        return {};
    QUrl url;
    url.setScheme(QStringLiteral("https"));
    url.setAuthority(server().address, QUrl::StrictMode);
    url.setPath(path);
    return url.host().isEmpty() ? QUrl() : url;
}

QNetworkReply *get(QNetworkAccessManager &network, const QUrl &url)
{
    QNetworkRequest request(url);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::NoLessSafeRedirectPolicy);
    request.setMaximumRedirectsAllowed(mostRedirections);
    request.setTransferTimeout(server().patience);
    request.setHeader(QNetworkRequest::UserAgentHeader,
                      QString(Constants::applicationName + QLatin1Char('/') + Constants::programVersion));
    // Nothing is unpacked on the way: the length that is told is that of what is kept.
    request.setRawHeader("Accept-Encoding", "identity");
    QNetworkReply *reply = network.get(request);
    reply->setReadBufferSize(mostBuffered);
    return reply;
}

QNetworkReply *getWords(QNetworkAccessManager &network, const QUrl &url)
{
    QNetworkReply *reply = get(network, url);
    reply->setReadBufferSize(longestWords + 1);
    QObject::connect(reply, &QNetworkReply::readyRead, reply, [reply] {
        if (reply->bytesAvailable() > longestWords)
            reply->abort();
    });
    QTimer::singleShot(server().patience, reply, &QNetworkReply::abort);
    return reply;
}

} // namespace UpdateServer
