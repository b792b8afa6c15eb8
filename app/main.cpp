#include "app/commandline.h"
#include "app/crashwriter.h"
#include "app/language/languagefiles.h"
#include "app/messages/desktopopener.h"
#include "app/settings/constants.h"
#ifndef Q_OS_WIN
#include "app/endsignals.h"
#endif
#include "app/running/runningdatabase.h"
#include "app/running/secondstart.h"
#include "app/settings/settingsmender.h"
#include "app/settings/windowsettings.h"
#include "app/window/mainwindow.h"
#include "app/window/startsplash.h"
#include "core/controllers/metatypes.h"
#include "fileops/files/temporarycopies.h"
#include "fileops/pictures/picturechild.h"
#include "fileops/pictures/picturedecoder.h"
#include "resources/resources.h"
#include "ui/dialogs/helpwindow.h"
#include "ui/views/foreigndragfilter.h"
#include "ui/widgets/mnemonics.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QIcon>
#include <QTextStream>
#include <QTimer>

namespace {

struct FirstDatabase
{
    QString path;
    MainWindow::StartupSource source = MainWindow::FromCommandLine;
};

FirstDatabase chooseFirstDatabase(const CommandLine::Given &given, bool isFirstRun)
{
    FirstDatabase first;
    if (given.isFile) {
        first.path = given.database;
    } else if (isFirstRun) {
        first.path = QDir::currentPath() + QStringLiteral("/demo.vrn");
        first.source = MainWindow::Demo;
    }
    return first;
}

/** A shell goes into the database that was open last. */
bool isHandedOver(const CommandLine::Given &given)
{
    if (given.shell.isEmpty())
        return SecondStart::isHandedOver(given.database);
    const DBDetails newest = WindowSettings::recentDatabases().value(0);
    return newest.type() == Constants::localDatabase &&
           SecondStart::isHandedOver(newest.databaseName(), given.shell);
}

/** The window answers for what it has open from now on. */
void connectToOtherStarts(RunningDatabase &running, MainWindow &window)
{
    QObject::connect(&window, &MainWindow::databaseChanged, &running, &RunningDatabase::setDatabase);
    // The other one waits for an answer, and not for what the user does about it.
    QObject::connect(&running, &RunningDatabase::windowRequested, &window, &MainWindow::comeForward,
                     Qt::QueuedConnection);
}

void applyStyleSheet(QApplication &application)
{
    QFile file(QStringLiteral(":/misc/styleSheet.txt"));
    if (file.open(QIODevice::ReadOnly | QIODevice::Text))
        application.setStyleSheet(QTextStream(&file).readAll());
}

} // namespace

int main(int argc, char *argv[])
{
    if (PictureChild::isAskedFor(argc, argv))
        return PictureChild::run();
    installCrashWriter();
    if (CommandLine::answer(argc, argv))
        return 0;
    PictureDecoder::setProgram(ChildProcess::ownProgram(), PictureChild::argument);

    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QApplication application(argc, argv);
    LanguageFiles language;
    language.load();
    initResources();
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/icons/vorna.png")));
    QCoreApplication::setApplicationName(Constants::applicationName);
    QCoreApplication::setOrganizationName(Constants::organizationName);
    registerMetaTypes();

    StartSplash splash(QPixmap(QStringLiteral(":misc/vornaSplash.png")));
    splash.show();
    splash.showMessage(QObject::tr("Opening database..."), Qt::AlignRight, Qt::black);

    SettingsMender::run();
    const CommandLine::Given given = CommandLine::read(argc, argv);
    // Before anything is written: what a new version shows at its first start is for the start that stays.
    if (isHandedOver(given))
        return 0;
    const QString lastVersion = WindowSettings::lastVersionUsed();
    const bool showQuickStart = WindowSettings::noteVersion(Constants::programVersion);
    const FirstDatabase first = chooseFirstDatabase(given, lastVersion.isEmpty());
    applyStyleSheet(application);
    const DesktopOpener opener;
    ForeignDragFilter foreignDrags;
    application.installEventFilter(&foreignDrags);

    // Outlives the window, whose worker makes the copies.
    const TemporaryCopies temporaryCopies;
    QTimer::singleShot(0, &TemporaryCopies::removeLeftovers);

    const Mnemonics mnemonics(&application);
    MainWindow window;
    QObject::connect(&window, &MainWindow::openingProgress, &splash, &StartSplash::setPercent);
#ifndef Q_OS_WIN
    const EndSignals endSignals;
#endif
    RunningDatabase running;
    connectToOtherStarts(running, window);
    window.openStartupDatabase(first.path, first.source);
    window.show();
    if (!given.shell.isEmpty())
        window.importShellFile(given.shell);
    if (showQuickStart)
        (new HelpWindow(HelpWindow::QuickStartGuide))->show();
    splash.finish(&window);
    return QApplication::exec();
}
