#include "net/updatehandler.h"

#include "app/settings/constants.h"
#include "app/settings/updatesettings.h"
#include "net/updateserver.h"

#include <QDateTime>
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
const QString folderName = QStringLiteral("vorna-update-");
constexpr int leftoverDays = 2;

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
    drop(m_check);
    drop(m_test);
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
    check(m_check, false);
}

void UpdateHandler::stopChecking()
{
    drop(m_check);
}

void UpdateHandler::checkConnection()
{
    qDebug() << "UPDATER: Checking connection.";
    check(m_test, true);
}

void UpdateHandler::check(QNetworkReply *&place, bool isTest)
{
    drop(place);
    const QUrl url = UpdateServer::url(QStringLiteral("/CurrentVersionWIN.php"));
    if (url.isEmpty()) {
        endCheck(isTest, false);
        return;
    }
    place = UpdateServer::getWords(network(), url);
    connect(place, &QNetworkReply::finished, this, &UpdateHandler::lookAtLatestVersionString,
            Qt::UniqueConnection);
}

void UpdateHandler::drop(QNetworkReply *&reply)
{
    if (!reply)
        return;
    reply->disconnect(this);
    reply->abort();
    reply->deleteLater();
    reply = nullptr;
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
    (isTest ? m_test : m_check) = nullptr;
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
    const QString found = QStringLiteral("%1.%2.%3").arg(latest->at(0)).arg(latest->at(1)).arg(latest->at(2));
    if (m_download || (found == m_latestVersion && hasNewVersion()))
        return;
    m_latestVersion = found;
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
    removeLeftovers();
    m_folder = std::make_unique<QTemporaryDir>(QDir::temp().filePath(folderName + QStringLiteral("XXXXXX")));
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
    drop(m_download);
    discardFile();
}

// What was handed to an installer, which reads it when this program has ended, or what a crash has left.
void UpdateHandler::removeLeftovers()
{
    const QDateTime latest = QDateTime::currentDateTime().addDays(-leftoverDays);
    const QFileInfoList folders =
        QDir::temp().entryInfoList({folderName + QLatin1Char('*')}, QDir::Dirs | QDir::NoSymLinks);
    const uint self = QFileInfo(QDir::homePath()).ownerId();
    for (const QFileInfo &folder : folders) {
        if (folder.ownerId() == self && folder.lastModified() < latest)
            QDir(folder.filePath()).removeRecursively();
    }
}

void UpdateHandler::discardFile()
{
    m_file.reset();
    m_folder.reset();
}

bool UpdateHandler::hasNewVersion() const
{
    return !m_download && m_file && m_file->exists();
}

bool UpdateHandler::installNewVersion()
{
    if (!hasNewVersion())
        return false;
#ifdef Q_OS_WIN
    const bool isStarted = QProcess::startDetached(m_file->fileName(), {});
#else
    // Nothing that was downloaded is run: who installs packages shows what it is and asks for leave first.
    const bool isStarted = QDesktopServices::openUrl(QUrl::fromLocalFile(m_file->fileName()));
#endif
    // The installer reads the file when this program has ended.
    m_folder->setAutoRemove(!isStarted);
    return isStarted;
}
