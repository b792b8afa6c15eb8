#include "core/controllers/metatypes.h"
#include "tools/makedemo/demomaker.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QLoggingCategory>
#include <QSettings>

/** makedemo DATABASE EXTERNAL_FOLDER: makes the demo database; the user's settings are not touched. */
int main(int argc, char *argv[])
{
    // No windows are shown: pictures are drawn and thumbnails made on any machine.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 3) {
        qWarning("usage: makedemo DATABASE EXTERNAL_FOLDER");
        return 2;
    }

    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false"));
    QTemporaryDir settings;
    QSettings::setDefaultFormat(QSettings::IniFormat);
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, settings.path());
    QSettings::setPath(QSettings::IniFormat, QSettings::SystemScope, settings.path());
    QCoreApplication::setOrganizationName(QStringLiteral("makedemo"));
    QCoreApplication::setApplicationName(QStringLiteral("makedemo"));
    registerMetaTypes();

    const QString database = QFileInfo(arguments.at(1)).absoluteFilePath();
    bool made = false;
    {
        DemoMaker maker(database, QFileInfo(arguments.at(2)).absoluteFilePath());
        made = maker.make();
    }
    // Half a demo would look like a finished one to the build.
    if (!made)
        QFile::remove(database);
    return made ? 0 : 1;
}
