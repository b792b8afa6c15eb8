#include "ui/views/fileopening.h"

#include "app/messages/desktopopener.h"
#include "app/messages/messages.h"
#include "app/settings/showntext.h"
#include "fileops/files/filenames.h"
#include "fileops/files/startable.h"
#include "fileops/looks/backgroundlooks.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QPointer>
#include <QProcess>
#include <QTimer>
#include <QUrl>

namespace {
// Two looks in turn are to stay below what anybody notices.
constexpr int patienceMilliseconds = 30;
constexpr int silenceMilliseconds = 10000;

/** Where the texts of this file are looked up. */
struct Texts
{
    Q_DECLARE_TR_FUNCTIONS(FileOpening)
};

bool isAllowedScheme(const QString &scheme)
{
    static const QStringList schemes = {QStringLiteral("http"), QStringLiteral("https"),
                                        QStringLiteral("ftp"), QStringLiteral("mailto")};
    return schemes.contains(scheme);
}

/** What is judged is what is opened: not the address of another computer, nor a name with a slash behind it.
 */
QUrl localUrl(const QString &path)
{
    return QUrl::fromLocalFile(QDir::cleanPath(path));
}

QUrl harmlessLocalUrl(const QString &path)
{
    return Startable::verdictOn(localUrl(path).toLocalFile()) == Startable::Harmless ? localUrl(path)
                                                                                     : QUrl();
}

QUrl linkedFile(const QUrl &url)
{
    const bool isHere = url.host().isEmpty() || url.host() == QLatin1String("localhost");
    return isHere ? harmlessLocalUrl(url.path(QUrl::FullyDecoded)) : QUrl();
}

void openFolder(QWidget *parent, const QString &path)
{
    const QString folder = QFileInfo(path).absolutePath();
    if (!QDesktopServices::openUrl(QUrl::fromLocalFile(folder)))
        DesktopOpener::tellOfFolder(parent, folder);
}

#ifndef Q_OS_WIN
void askFileManager(QWidget *parent, const QString &path)
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        openFolder(parent, path);
        return;
    }
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("/org/freedesktop/FileManager1"),
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("ShowItems"));
    call << QStringList(QString::fromLatin1(localUrl(path).toEncoded())) << QString();
    auto *watcher = new QDBusPendingCallWatcher(bus.asyncCall(call), parent);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, parent, [watcher, parent, path] {
        if (watcher->isError())
            openFolder(parent, path);
        watcher->deleteLater();
    });
}
#endif

/**
 * Hands over what a look at a disk tells: mostly at once, and later where the disk is slow. Who asks for
 * something else meanwhile does not want it any more.
 */
template <class Look, class Act>
void ask(QWidget *parent, const QString &path, const Look &look, const Act &act)
{
    static const QString name = QStringLiteral("openingLooks");
    delete (parent ? parent->findChild<BackgroundLooks *>(name, Qt::FindDirectChildrenOnly) : nullptr);
    auto *looks = new BackgroundLooks(parent);
    looks->setObjectName(name);
    const auto take = [looks, act](const auto &found) {
        // What is done now may ask for the next thing.
        looks->setObjectName(QString());
        looks->deleteLater();
        act(found);
    };
    const auto lookOnce = [look](const BackgroundLooks::ShouldEnd &) { return look(); };
    if (looks->runShortly(patienceMilliseconds, lookOnce, take))
        return;
    QTimer::singleShot(silenceMilliseconds, looks, [looks, parent = QPointer<QWidget>(parent), path] {
        looks->deleteLater();
        Messages::warning(parent, Texts::tr("Error opening file"),
                          Texts::tr("The disk with \"%1\" does not answer.").arg(ShownText::cut(path)));
    });
}

void warnOfAbsence(QWidget *parent)
{
    Messages::warning(
        parent, Texts::tr("File No Longer Present"),
        Texts::tr("This file is no longer present in its original path. It may have been moved, "
                  "deleted or renamed."));
}

bool mayOpen(QWidget *parent, Startable::Verdict verdict)
{
    switch (verdict) {
    case Startable::Program:
        Messages::warning(
            parent, Texts::tr("Error opening file"),
            Texts::tr("This file would start a program, which Vorna does not do. Start it from its "
                      "folder if you trust it."));
        return false;
    case Startable::Unopenable:
        Messages::warning(parent, Texts::tr("Error opening file"),
                          Texts::tr("Vorna opens files and folders only, and this is neither."));
        return false;
    default:
        return true;
    }
}
} // namespace

QUrl FileOpening::linkTarget(const QString &text)
{
    const QString link = text.trimmed();
    if (link.isEmpty())
        return {};
    if (link.startsWith(QLatin1Char('/')))
        return harmlessLocalUrl(link);
    QUrl url(link, QUrl::TolerantMode);
    if (!isAllowedScheme(url.scheme()) && !url.isLocalFile()) {
        // "host:port" reads like a scheme, too; what has a real one of another kind keeps it here.
        url = QUrl::fromUserInput(link);
    }
    if (url.isLocalFile())
        return linkedFile(url);
    return url.isValid() && isAllowedScheme(url.scheme()) ? url : QUrl();
}

void FileOpening::openHyperlink(QWidget *parent, const QString &text)
{
    ask(
        parent, text, [text] { return linkTarget(text); },
        [parent = QPointer<QWidget>(parent)](const QUrl &url) {
            if (url.isEmpty() || !QDesktopServices::openUrl(url))
                Messages::warning(parent, Texts::tr("Error"), Texts::tr("Failed opening hyperlink."));
        });
}

void FileOpening::whenThere(QWidget *parent, const QString &path, const std::function<void()> &act)
{
    ask(
        parent, path, [path] { return QFileInfo::exists(path); },
        [parent = QPointer<QWidget>(parent), act](bool isThere) { isThere ? act() : warnOfAbsence(parent); });
}

void FileOpening::openExternalFile(QWidget *parent, const QString &path)
{
    const QPointer<QWidget> window = parent;
    const auto open = [window, path](Startable::Verdict verdict) {
        if (!mayOpen(window, verdict) || QDesktopServices::openUrl(localUrl(path)))
            return;
        // It may have gone while the desktop looked for a program.
        whenThere(window, path, [window] {
            Messages::warning(window, Texts::tr("Error opening file"),
                              Texts::tr("Vorna is unable to open this file. There may not be any application "
                                        "associated with the file type."));
        });
    };
    whenThere(parent, path, [window, path, open] {
        ask(
            window, path, [path] { return Startable::verdictOn(QDir::cleanPath(path)); }, open);
    });
}

bool FileOpening::mayOpenCopy(QWidget *parent, const QString &name)
{
    // By the name that the copy gets.
    if (!Startable::isByName(Database::safeFileName(name)))
        return true;
    Messages::warning(
        parent, Texts::tr("Error opening file"),
        Texts::tr("This file would start a program, which Vorna does not do out of a database. Extract "
                  "it if you trust it, and start it from there."));
    return false;
}

void FileOpening::showInFileManager(QWidget *parent, const QString &path)
{
    whenThere(parent, path, [parent = QPointer<QWidget>(parent), path] {
#ifdef Q_OS_WIN
        QProcess::startDetached(QStringLiteral("explorer"),
                                {QStringLiteral("/n,/select,"), QDir::toNativeSeparators(path)});
#else
        askFileManager(parent, path);
#endif
    });
}
