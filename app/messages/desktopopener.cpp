#include "app/messages/desktopopener.h"

#include "app/messages/messages.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QDesktopServices>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

#ifdef Q_OS_UNIX
#include <unistd.h>
#endif

namespace {
/** What "xdg-open" may take to find a program. Later its end is that of the program, which it may wait for.
 */
constexpr int patience = 30000;
/** Its codes for "no tool found" and "the action failed". */
constexpr int noTool = 3;
constexpr int failed = 4;

const QStringList &schemes()
{
    static const QStringList names = {QStringLiteral("file"), QStringLiteral("http"), QStringLiteral("https"),
                                      QStringLiteral("ftp"), QStringLiteral("mailto")};
    return names;
}

class OpenerProcess : public QProcess
{
protected:
    void setupChildProcess() override
    {
#ifdef Q_OS_UNIX
        // What was opened does not end with the terminal that this program was started in.
        setsid();
#endif
    }
};

} // namespace

DesktopOpener::DesktopOpener(const QString &program, QObject *parent)
    : QObject(parent), m_program(QStandardPaths::findExecutable(program))
{
    if (m_program.isEmpty())
        return;
    for (const QString &scheme : schemes())
        QDesktopServices::setUrlHandler(scheme, this, "open");
}

DesktopOpener::~DesktopOpener()
{
    if (m_program.isEmpty())
        return;
    for (const QString &scheme : schemes())
        QDesktopServices::unsetUrlHandler(scheme);
}

void DesktopOpener::open(const QUrl &url)
{
    // Without a parent: the end of a process object would end the opened program, which outlives this one.
    auto *process = new OpenerProcess;
    process->setProcessChannelMode(QProcess::ForwardedChannels);
    process->setStandardInputFile(QProcess::nullDevice());
    const QDeadlineTimer deadline(patience);
    connect(process, &QProcess::errorOccurred, this, [this, process, url](QProcess::ProcessError error) {
        if (error != QProcess::FailedToStart)
            return;
        process->deleteLater();
        handleEnd(url, noTool);
    });
    connect(process, qOverload<int, QProcess::ExitStatus>(&QProcess::finished), this,
            [this, process, url, deadline](int exitCode) {
                process->deleteLater();
                if (!deadline.hasExpired())
                    handleEnd(url, exitCode);
            });
    process->start(m_program, {QString::fromLatin1(url.toEncoded())});
}

void DesktopOpener::handleEnd(const QUrl &url, int exitCode)
{
    if (exitCode != noTool && exitCode != failed)
        return;
    QWidget *parent = QApplication::activeWindow();
    if (!url.isLocalFile())
        Messages::warning(parent, tr("Error"), tr("Failed opening hyperlink."));
    else if (QFileInfo(url.toLocalFile()).isDir())
        tellOfFolder(parent, url.toLocalFile());
    else
        Messages::warning(parent, tr("Error opening file"),
                          tr("Vorna is unable to open this file. There may not be any application "
                             "associated with the file type."));
}

void DesktopOpener::tellOfFolder(QWidget *parent, const QString &folder)
{
    Messages::warning(
        parent, tr("Error opening folder"),
        tr("The folder \"%1\" could not be shown. There may not be any file manager installed.").arg(folder));
}
