#pragma once

#include <QObject>
#include <QString>

class QNetworkAccessManager;
class QNetworkReply;

/** Takes a user's message to the update server. Belongs to who asks for the message; GUI thread. */
class FeedbackSender : public QObject
{
    Q_OBJECT

public:
    explicit FeedbackSender(QObject *parent);

    /** finished() tells what became of it, at once where there is no server. The address may be empty. */
    void send(const QString &message, const QString &email);

public slots:
    void handleFinished(QNetworkReply *reply);

signals:
    /** True when the server has recorded the message. Once for each message. */
    void finished(bool isRecorded);

private:
    QNetworkAccessManager *m_network = nullptr;
};
