#pragma once

#include "net/updateserver.h"
#include "tests/support/httpsserver.h"

Q_DECLARE_METATYPE(Answer)

/**
 * The update server of a test, beside one without encryption that nobody may come to, and a folder for
 * temporary files.
 */
class UpdateServerFixture
{
public:
    static constexpr int shortPatience = 1000; // milliseconds
    static inline const QString versionPath = QStringLiteral("/CurrentVersionWIN.php");
    static inline const QString packagePath = QStringLiteral("/vorna_4.2.0_amd64.deb");
    static inline const QString feedbackPath = QStringLiteral("/feedback.php");

    UpdateServerFixture() : m_outerTemporary(qgetenv("TMPDIR"))
    {
        authority(); // which outlives the folder
        setTemporary(QFile::encodeName(m_temporary.path()));
        serve("good"_s);
    }
    ~UpdateServerFixture()
    {
        UpdateServer::setAddress(QString());
        m_outerTemporary.isNull() ? qunsetenv("TMPDIR") : qputenv("TMPDIR", m_outerTemporary);
    }
    UpdateServerFixture(const UpdateServerFixture &) = delete;
    UpdateServerFixture &operator=(const UpdateServerFixture &) = delete;

    static Answer version(const QByteArray &text) { return Answer::of("w^3sJ" + text + "gm~R"); }
    /** Goes on with a server that shows this certificate. */
    void serve(const QString &certificate)
    {
        m_server =
            std::make_unique<TestServer>(authority().certificate(certificate), authority().key(certificate));
        UpdateServer::setAddress(m_server->address());
    }
    /** Lets the server say this, and nobody wait long for one that does not end. */
    void answer(const QString &path, Answer answer)
    {
        answer.bytes.replace("PLAIN", QByteArray::number(m_plain.serverPort()));
        m_server->answer(path, answer);
        const bool hasEnd = answer.end == Answer::Close;
        UpdateServer::setAddress(m_server->address(), hasEnd ? UpdateServer::usualPatience : shortPatience);
    }
    const QList<QUrl> &requests() const { return m_server->requests(); }
    int connections() const { return m_server->connections(); }
    TestServer &plain() { return m_plain; }

    static void setTemporary(const QByteArray &folder) { qputenv("TMPDIR", folder); }
    QDir temporary() const { return QDir(m_temporary.path()); }
    /** What downloads have left among the temporary files: each file, and each folder without one. */
    QStringList leftovers() const
    {
        QStringList found;
        for (const QFileInfo &folder : temporary().entryInfoList({"vorna-update-*"_s})) {
            const QDir entries(folder.filePath());
            const QStringList files = entries.entryList(QDir::Files | QDir::Hidden);
            found.append(files.isEmpty() ? folder.filePath() : entries.filePath(files.first()));
        }
        return found;
    }

private:
    static const TestAuthority &authority()
    {
        static const TestAuthority instance;
        return instance;
    }

    QTemporaryDir m_temporary;
    QByteArray m_outerTemporary;
    std::unique_ptr<TestServer> m_server;
    TestServer m_plain; // as a redirection without encryption would have it
};
