#include "net/feedbacksender.h"

#include "app/settings/constants.h"
#include "net/updateserver.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QUrlQuery>

namespace {

const QByteArray successToken = QByteArrayLiteral("p!4%hwT");

/** A query takes a plus, and a percent sign before two digits, for its own. */
void addItem(QUrlQuery &query, const QString &key, const QString &value)
{
    query.addQueryItem(key, QString::fromLatin1(QUrl::toPercentEncoding(value)));
}

} // namespace

FeedbackSender::FeedbackSender(QObject *parent) : QObject(parent) {}

void FeedbackSender::send(const QString &message, const QString &email)
{
    QUrl url = UpdateServer::url(QStringLiteral("/feedback.php"));
    if (url.isEmpty()) {
        emit finished(false);
        return;
    }
    QUrlQuery query;
    addItem(query, QStringLiteral("feedback"),
            QStringLiteral("%1 \nVersion: %2").arg(message, Constants::programVersion));
    addItem(query, QStringLiteral("email"), email);
    url.setQuery(query);
    if (!m_network) {
        m_network = new QNetworkAccessManager(this);
        connect(m_network, &QNetworkAccessManager::finished, this, &FeedbackSender::handleFinished);
    }
    UpdateServer::getWords(*m_network, url);
}

void FeedbackSender::handleFinished(QNetworkReply *reply)
{
    reply->deleteLater();
    const bool isRecorded = reply->error() == QNetworkReply::NoError && reply->readAll() == successToken;
    emit finished(isRecorded);
}
