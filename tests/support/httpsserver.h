#pragma once

#include "tests/support/text.h"

#include <QtNetwork>

/** Certificates that a test makes for itself, signed by an authority that nobody else knows. */
class TestAuthority
{
public:
    TestAuthority()
    {
        run({"req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1", "-nodes", "-keyout",
             "ca.key", "-out", "ca.crt", "-subj", "/CN=Authority of the test", "-days", "2"});
        certify("good", "localhost");
        certify("other name", "example.org");
        certify("expired", "localhost", "-1");
        run({"req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1", "-nodes", "-keyout",
             "foreign.key", "-out", "foreign.crt", "-subj", "/CN=localhost", "-days", "2"});
        QSslConfiguration trusting = QSslConfiguration::defaultConfiguration();
        trusting.setCaCertificates({certificate("ca"_s)});
        QSslConfiguration::setDefaultConfiguration(trusting);
    }

    QSslCertificate certificate(const QString &name) const { return QSslCertificate(bytes(name + ".crt"_s)); }
    QSslKey key(const QString &name) const { return QSslKey(bytes(name + ".key"_s), QSsl::Ec); }

private:
    void certify(const char *name, const QByteArray &host, const char *days = "2")
    {
        const QByteArray of(name);
        QFile extensions(m_folder.filePath("san"_s));
        if (!extensions.open(QIODevice::WriteOnly) || extensions.write("subjectAltName=DNS:" + host) < 0)
            qFatal("the extensions of a certificate cannot be written");
        extensions.close();
        run({"req", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1", "-nodes", "-keyout",
             of + ".key", "-out", of + ".csr", "-subj", "/CN=" + host});
        run({"x509", "-req", "-in", of + ".csr", "-CA", "ca.crt", "-CAkey", "ca.key", "-CAcreateserial",
             "-days", days, "-extfile", "san", "-out", of + ".crt"});
    }
    void run(const QList<QByteArray> &arguments)
    {
        QProcess process;
        process.setWorkingDirectory(m_folder.path());
        QStringList texts;
        for (const QByteArray &argument : arguments)
            texts.append(QString::fromUtf8(argument));
        process.start("openssl"_s, texts);
        if (!process.waitForFinished() || process.exitCode() != 0)
            qFatal("openssl: %s", process.readAllStandardError().constData());
    }
    QByteArray bytes(const QString &name) const
    {
        QFile file(m_folder.filePath(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    QTemporaryDir m_folder;
};

/** What a server says to one request, as it goes over the line. */
struct Answer
{
    enum End {
        Close, // after the bytes
        Stay,  // with no word more
        Drip,  // with a further byte now and then, for ever
        Slowly // the head at once, then a byte now and then, up to the last
    };
    QByteArray bytes;
    End end = Close;

    static Answer of(const QByteArray &body, const QByteArray &status = "200 OK",
                     const QByteArray &headers = {})
    {
        return {"HTTP/1.1 " + status + "\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n" +
                    headers + "Connection: close\r\n\r\n" + body,
                Close};
    }
    static Answer redirection(const QByteArray &target)
    {
        return of({}, "302 Found", "Location: " + target + "\r\n");
    }
};

/** A server on this machine that answers by path, over TLS when it has a certificate. */
class TestServer : public QTcpServer
{
public:
    TestServer() { listen(QHostAddress::LocalHost); }
    TestServer(const QSslCertificate &certificate, const QSslKey &key)
        : m_certificate(certificate), m_key(key)
    {
        listen(QHostAddress::LocalHost);
    }

    QString address() const { return "localhost:%1"_s.arg(serverPort()); }
    void answer(const QString &path, const Answer &answer) { m_answers.insert(path, answer); }
    /** The addresses that were asked for, with their queries. */
    const QList<QUrl> &requests() const { return m_requests; }
    int connections() const { return m_connections; }

protected:
    void incomingConnection(qintptr descriptor) override
    {
        ++m_connections;
        auto *socket = new QSslSocket(this);
        socket->setSocketDescriptor(descriptor);
        connect(socket, &QSslSocket::readyRead, this, [this, socket] { read(socket); });
        connect(socket, &QSslSocket::disconnected, socket, &QObject::deleteLater);
        if (m_certificate.isNull())
            return;
        socket->setLocalCertificate(m_certificate);
        socket->setPrivateKey(m_key);
        socket->startServerEncryption();
    }

private:
    void read(QSslSocket *socket)
    {
        const QByteArray head = socket->property("head").toByteArray() + socket->readAll();
        socket->setProperty("head", head);
        if (!head.contains("\r\n\r\n"))
            return;
        const QUrl url(QString::fromLatin1(head.split(' ').value(1)));
        m_requests.append(url);
        const Answer said = m_answers.value(url.path(), Answer::of("nothing here", "404 Not Found"));
        if (said.end == Answer::Slowly) {
            const int start = said.bytes.indexOf("\r\n\r\n") + 4;
            socket->write(said.bytes.left(start));
            writeSlowly(socket, said.bytes.mid(start));
            return;
        }
        socket->write(said.bytes);
        if (said.end == Answer::Close)
            socket->disconnectFromHost();
        if (said.end != Answer::Drip)
            return;
        auto *timer = new QTimer(socket);
        connect(timer, &QTimer::timeout, socket, [socket] { socket->write("x"); });
        timer->start(20);
    }
    static void writeSlowly(QSslSocket *socket, const QByteArray &bytes)
    {
        if (bytes.isEmpty()) {
            socket->disconnectFromHost();
            return;
        }
        socket->write(bytes.left(1));
        QTimer::singleShot(20, socket, [socket, bytes] { writeSlowly(socket, bytes.mid(1)); });
    }

    QSslCertificate m_certificate;
    QSslKey m_key;
    QHash<QString, Answer> m_answers;
    QList<QUrl> m_requests;
    int m_connections = 0;
};
