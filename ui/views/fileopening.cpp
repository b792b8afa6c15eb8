#include "ui/views/fileopening.h"

#include "app/messages.h"
#include "fileops/databasefunctions.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QUrl>

namespace {

QString tr(const char *text)
{
    return QCoreApplication::translate("FileOpening", text);
}

bool isAllowedScheme(const QString &scheme)
{
    static const QStringList schemes = {QStringLiteral("http"), QStringLiteral("https"),
                                        QStringLiteral("ftp"), QStringLiteral("mailto")};
    return schemes.contains(scheme);
}

bool isLauncher(const QString &name)
{
    return name.endsWith(QLatin1String(".desktop"), Qt::CaseInsensitive);
}

// A copy is never executable, but these are run all the same where the desktop knows a program for them.
bool startsProgram(const QString &name)
{
    static const QStringList endings = {
        QStringLiteral("appimage"), QStringLiteral("bat"), QStringLiteral("cmd"),  QStringLiteral("com"),
        QStringLiteral("exe"),      QStringLiteral("jar"), QStringLiteral("jnlp"), QStringLiteral("lnk"),
        QStringLiteral("msi"),      QStringLiteral("pif"), QStringLiteral("ps1"),  QStringLiteral("scr"),
        QStringLiteral("url"),      QStringLiteral("vbs"), QStringLiteral("wsf")};
    const QString ending = name.section(QLatin1Char('.'), -1).trimmed().toLower();
    return isLauncher(name.trimmed()) || (name.contains(QLatin1Char('.')) && endings.contains(ending));
}

QUrl harmlessLocalUrl(const QString &path)
{
    const QFileInfo info(path);
    // What a link on the disk leads to counts as well as its own name.
    const bool runs =
        (info.isFile() && info.isExecutable()) || isLauncher(path) || isLauncher(info.canonicalFilePath());
    return runs ? QUrl() : QUrl::fromLocalFile(path);
}

void openFolder(const QString &path)
{
    QDesktopServices::openUrl(QUrl::fromLocalFile(QFileInfo(path).absolutePath()));
}

#ifndef Q_OS_WIN
void askFileManager(QWidget *parent, const QString &path)
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        openFolder(path);
        return;
    }
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("/org/freedesktop/FileManager1"),
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("ShowItems"));
    call << QStringList(QString::fromLatin1(QUrl::fromLocalFile(path).toEncoded())) << QString();
    auto *watcher = new QDBusPendingCallWatcher(bus.asyncCall(call), parent);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, parent, [watcher, path] {
        if (watcher->isError())
            openFolder(path);
        watcher->deleteLater();
    });
}
#endif

} // namespace

QUrl FileOpening::linkTarget(const QString &text)
{
    const QString link = text.trimmed();
    if (link.isEmpty())
        return {};
    if (QDir::isAbsolutePath(link))
        return harmlessLocalUrl(link);
    QUrl url(link, QUrl::TolerantMode);
    if (!isAllowedScheme(url.scheme()) && !url.isLocalFile()) {
        // "host:port" reads like a scheme, too; what has a real one of another kind keeps it here.
        url = QUrl::fromUserInput(link);
    }
    if (url.isLocalFile())
        return harmlessLocalUrl(url.toLocalFile());
    return url.isValid() && isAllowedScheme(url.scheme()) ? url : QUrl();
}

void FileOpening::openHyperlink(QWidget *parent, const QString &text)
{
    const QUrl url = linkTarget(text);
    if (url.isEmpty() || !QDesktopServices::openUrl(url))
        Messages::warning(parent, tr("Error"), tr("Failed opening hyperlink."));
}

bool FileOpening::warnWhenGone(QWidget *parent, const QString &path)
{
    if (QFileInfo::exists(path))
        return false;
    Messages::warning(parent, tr("File No Longer Present"),
                      tr("This file is no longer present in its original path. It may have been moved, "
                         "deleted or renamed."));
    return true;
}

void FileOpening::openExternalFile(QWidget *parent, const QString &path)
{
    if (warnWhenGone(parent, path) || QDesktopServices::openUrl(QUrl::fromLocalFile(path)))
        return;
    // It may have gone while the desktop looked for a program.
    if (!warnWhenGone(parent, path))
        Messages::warning(parent, tr("Error opening file"),
                          tr("Vorna is unable to open this file. There may not be any application "
                             "associated with the file type."));
}

bool FileOpening::mayOpenCopy(QWidget *parent, const QString &name)
{
    // By the name that the copy gets.
    if (!startsProgram(Database::safeFileName(name)))
        return true;
    Messages::warning(
        parent, tr("Error opening file"),
        tr("This file would start a program, which Vorna does not do out of a database. Extract "
           "it if you trust it, and start it from there."));
    return false;
}

void FileOpening::showInFileManager(QWidget *parent, const QString &path)
{
    if (warnWhenGone(parent, path))
        return;
#ifdef Q_OS_WIN
    QProcess::startDetached(QStringLiteral("explorer"),
                            {QStringLiteral("/n,/select,"), QDir::toNativeSeparators(path)});
#else
    askFileManager(parent, path);
#endif
}
