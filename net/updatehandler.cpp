#include "net/updatehandler.h"

#include "app/settings/constants.h"
#include "app/settings/updatesettings.h"
#include "net/updateserver.h"

#include <QDebug>
#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QProcess>
#include <QRegExp>
#include <QTemporaryDir>

#include <array>
#include <optional>

namespace {

const QString startMarker = QStringLiteral("w^3sJ");
const QString endMarker = QStringLiteral("gm~R");
#ifdef Q_OS_WIN
const QString fileName = QStringLiteral("VornaSetup-%1.exe");
#else
const QString fileName = QStringLiteral("vorna_%1_amd64.deb");
#endif
constexpr qint64 mostBytes = 1024LL * 1024 * 1024;
constexpr int httpOk = 200;

using Version = std::array<int, 3>;

std::optional<Version> versionIn(const QString &text)
{
    QRegExp pattern(QStringLiteral("(\\d+).(\\d+).(\\d+)"), Qt::CaseSensitive);
    bool isFound = pattern.indexIn(text, 0) >= 0;
    Version version{};
    for (int i = 0; isFound && i < int(version.size()); ++i)
        version[size_t(i)] = pattern.cap(i + 1).toInt(&isFound);
    return isFound ? std::make_optional(version) : std::nullopt;
}

} // namespace

UpdateHandler::UpdateHandler(QObject *parent) : QObject(parent) {}

UpdateHandler::~UpdateHandler()
{
    cancel();
}

QNetworkAccessManager &UpdateHandler::network()
{
    // It looks for networks at its birth, which is for nothing where nobody asks for updates.
    if (!m_network)
        m_network = new QNetworkAccessManager(this);
    return *m_network;
}

void UpdateHandler::checkForUpdates()
{
    qDebug() << "UPDATER: Checking for updates...";
    check(false);
}

void UpdateHandler::checkConnection()
{
    qDebug() << "UPDATER: Checking connection.";
    if (m_test) {
        m_test->disconnect(this);
        m_test->abort();
        m_test->deleteLater();
        m_test = nullptr;
    }
    check(true);
}

void UpdateHandler::check(bool isTest)
{
    const QUrl url = UpdateServer::url(QStringLiteral("/CurrentVersionWIN.php"));
    if (url.isEmpty()) {
        endCheck(isTest, false);
        return;
    }
    QNetworkReply *reply = UpdateServer::getWords(network(), url);
    if (isTest)
        m_test = reply;
    connect(reply, &QNetworkReply::finished, this, &UpdateHandler::lookAtLatestVersionString,
            Qt::UniqueConnection);
}

void UpdateHandler::endCheck(bool isTest, bool succeeded)
{
    emit checkingSucceeded(succeeded);
    if (isTest)
        emit connectionChecked(succeeded);
}

void UpdateHandler::lookAtLatestVersionString()
{
    auto *reply = qobject_cast<QNetworkReply *>(sender());
    if (!reply)
        return;
    reply->deleteLater();
    const bool isTest = reply == m_test;
    if (isTest)
        m_test = nullptr;
    QString text;
    if (reply->error() == QNetworkReply::NoError)
        text = QString::fromLatin1(reply->readAll());
    const bool isAnswer = text.startsWith(startMarker) && text.endsWith(endMarker);
    endCheck(isTest, isAnswer);
    if (!isAnswer)
        return;
    qDebug() << "UPDATER: Got the version string";
    if (!isTest)
        offer(text.mid(startMarker.size(), text.size() - startMarker.size() - endMarker.size()));
}

void UpdateHandler::offer(const QString &version)
{
    const std::optional<Version> latest = versionIn(version);
    const std::optional<Version> running = versionIn(Constants::programVersion);
    // Another major number is a program of its own, which nobody gets by an update.
    if (!latest || !running || *latest <= *running || latest->front() != running->front())
        return;
    m_latestVersion = QStringLiteral("%1.%2.%3").arg(latest->at(0)).arg(latest->at(1)).arg(latest->at(2));
    if (UpdateSettings::autoUpdate())
        emit getNewVersionNow();
    else
        emit newVersionAvailable(true);
}

void UpdateHandler::downloadLatest()
{
    if (m_download)
        return;
    qDebug() << "UPDATER: Downloading latest version...";
    const QUrl url = UpdateServer::url(QLatin1Char('/') + fileName.arg(m_latestVersion));
    if (m_latestVersion.isEmpty() || url.isEmpty() || !openFile()) {
        discardFile();
        emit newVersionDownloaded(false);
        return;
    }
    m_download = UpdateServer::get(network(), url);
    qDebug() << "UPDATER:" << url.toString();
    connect(m_download, &QNetworkReply::downloadProgress, this, &UpdateHandler::handleDownloadProgress);
    // Progress is told of now and then only, while no more comes than fits into the buffer.
    connect(m_download, &QNetworkReply::readyRead, this, &UpdateHandler::keepReceived);
    connect(m_download, &QNetworkReply::finished, this, &UpdateHandler::handleFinishedDownloading);
}

bool UpdateHandler::openFile()
{
    m_folder = std::make_unique<QTemporaryDir>(QDir::temp().filePath(QStringLiteral("vorna-update-XXXXXX")));
    if (!m_folder->isValid())
        return false;
    m_isKept = true;
    m_file = std::make_unique<QFile>(m_folder->filePath(fileName.arg(m_latestVersion)));
    return m_file->open(QIODevice::WriteOnly | QIODevice::NewOnly) &&
           m_file->setPermissions(QFile::ReadOwner | QFile::WriteOwner);
}

void UpdateHandler::keepReceived()
{
    if (!m_download || !m_file || !m_file->isOpen())
        return;
    const QByteArray bytes = m_download->readAll();
    m_isKept = m_file->write(bytes) == bytes.size() && m_file->pos() <= mostBytes;
    if (m_isKept)
        return;
    // Before the reply, whose end comes at once.
    m_file->close();
    m_download->abort();
}

void UpdateHandler::handleDownloadProgress(qlonglong received, qlonglong total)
{
    emit downloadProgress(received, total);
    if (m_download && total > mostBytes)
        m_download->abort();
    else
        keepReceived();
}

bool UpdateHandler::isComplete(const QNetworkReply &reply) const
{
    if (!m_isKept || reply.error() != QNetworkReply::NoError ||
        reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt() != httpOk)
        return false;
    // An answer that ends with its connection, without having told its length, may have been cut.
    const qint64 size = m_file->size();
    const QVariant length = reply.header(QNetworkRequest::ContentLengthHeader);
    const bool isWhole = length.isValid()
                             ? length.toLongLong() == size
                             : reply.rawHeader("Transfer-Encoding").toLower().contains("chunked");
    return size > 0 && isWhole;
}

void UpdateHandler::handleFinishedDownloading()
{
    qDebug() << "UPDATER: Handling completion of download...";
    if (!m_download)
        return;
    keepReceived();
    m_isKept = m_isKept && m_file->flush();
    m_file->close();
    const bool succeeded = isComplete(*m_download);
    m_download->deleteLater();
    m_download = nullptr;
    if (succeeded)
        qDebug() << "UPDATER: Looks like things were successful.";
    else
        discardFile();
    emit newVersionDownloaded(succeeded);
}

void UpdateHandler::cancel()
{
    if (m_download) {
        m_download->disconnect(this);
        m_download->abort();
        m_download->deleteLater();
        m_download = nullptr;
    }
    discardFile();
}

void UpdateHandler::discardFile()
{
    m_file.reset();
    m_folder.reset();
}

bool UpdateHandler::installNewVersion()
{
    if (m_download || !m_file || !m_file->exists())
        return false;
#ifdef Q_OS_WIN
    const bool isStarted = QProcess::startDetached(m_file->fileName(), {});
#else
    // Nothing that was downloaded is run: who installs packages looks at its signature and asks for leave.
    const bool isStarted = QDesktopServices::openUrl(QUrl::fromLocalFile(m_file->fileName()));
#endif
    // The installer reads the file when this program has ended.
    m_folder->setAutoRemove(!isStarted);
    return isStarted;
}
