#include "app/crashwriter.h"
#include "app/language/languagefiles.h"
#include "app/settings/constants.h"
#ifndef Q_OS_WIN
#include "app/endsignals.h"
#endif
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

FirstDatabase chooseFirstDatabase(int argc, char *argv[], bool isFirstRun)
{
    FirstDatabase first;
    if (argc == 2) {
        first.path = QString::fromUtf8(argv[1]);
        // To Qt a colon at the beginning means another place.
        if (first.path.startsWith(QLatin1Char(':')))
            first.path.prepend(QDir::currentPath() + QLatin1Char('/'));
    } else if (isFirstRun) {
        first.path = QDir::currentPath() + QStringLiteral("/demo.vrn");
        first.source = MainWindow::Demo;
    }
    return first;
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
    const QString lastVersion = WindowSettings::lastVersionUsed();
    const bool showQuickStart = WindowSettings::noteVersion(Constants::programVersion);
    const FirstDatabase first = chooseFirstDatabase(argc, argv, lastVersion.isEmpty());
    applyStyleSheet(application);
    ForeignDragFilter foreignDrags;
    application.installEventFilter(&foreignDrags);

    // Outlives the window, whose worker makes the copies.
    const TemporaryCopies temporaryCopies;
    QTimer::singleShot(0, &TemporaryCopies::removeLeftovers);

    MainWindow window;
    QObject::connect(&window, &MainWindow::openingProgress, &splash, &StartSplash::setPercent);
#ifndef Q_OS_WIN
    const EndSignals endSignals;
#endif
    window.openStartupDatabase(first.path, first.source);
    window.show();
    if (showQuickStart)
        (new HelpWindow(HelpWindow::QuickStartGuide))->show();
    splash.finish(&window);
    return QApplication::exec();
}
