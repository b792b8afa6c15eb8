#include "app/commandline.h"

#include "app/language/languagefiles.h"
#include "app/settings/constants.h"

#include <QCoreApplication>
#include <QDir>

#include <cstdio>

namespace {

QString versionText()
{
    return Constants::applicationName + QLatin1Char(' ') + Constants::programVersion + QLatin1Char('\n');
}

QString helpText()
{
    return QCoreApplication::translate(
        "CommandLine",
        "Usage: vorna [FILE]\n\n"
        "Files documents, pictures and hyperlinks in a database, with tags in place of folders.\n\n"
        "FILE is a database (.vrn) to open, or a shell (.vsh) to import. Without it the database that "
        "was\nopen last is opened.\n\n"
        "  --help     show this text\n"
        "  --version  show the version\n");
}

} // namespace

CommandLine::Given CommandLine::read(int argc, char *argv[])
{
    Given given;
    if (argc != 2)
        return given;
    given.isFile = true;
    QString path = QString::fromUtf8(argv[1]);
    // To Qt a colon at the beginning means another place.
    if (path.startsWith(QLatin1Char(':')))
        path.prepend(QDir::currentPath() + QLatin1Char('/'));
    // Another run of the program, which may be handed it, stands in another folder.
    if (path.endsWith(Constants::shellExtension, Qt::CaseInsensitive))
        given.shell = QDir::current().absoluteFilePath(path);
    else
        given.database = path;
    return given;
}

bool CommandLine::answer(int argc, char *argv[])
{
    const QByteArray argument = argc == 2 ? argv[1] : "";
    if (argument != "--help" && argument != "--version")
        return false;
    // No window is needed, nor a display.
    const QCoreApplication application(argc, argv);
    LanguageFiles language;
    language.load();
    const QString text = argument == "--help" ? helpText() : versionText();
    std::fputs(text.toLocal8Bit().constData(), stdout);
    return true;
}
