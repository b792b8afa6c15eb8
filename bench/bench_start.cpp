// From the start of a process to a usable window: the program's own start against a program with nothing but
// an empty QMainWindow. Each start is a process of its own, so that libraries and fonts are paid for in both;
// told are the CPU times of these processes and their ratios.
#include "app/settings/constants.h"
#include "app/window/mainwindow.h"
#include "core/controllers/collection.h"
#include "core/controllers/metatypes.h"
#include "resources/resources.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QFile>
#include <QIcon>
#include <QSettings>
#include <QSplashScreen>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QTextStream>
#include <QTimer>

#include <algorithm>
#include <fcntl.h>
#include <memory>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

constexpr int smallCollection = 10000;

/** Ends the program once the window, or what covers it, has been painted and nothing else waits to be done.
 */
class EndAfterPaint : public QObject
{
public:
    explicit EndAfterPaint(QWidget *window) : m_window(window) { qApp->installEventFilter(this); }

    bool eventFilter(QObject *object, QEvent *event) override
    {
        if (event->type() == QEvent::Paint && object->isWidgetType())
            m_isPainted = m_isPainted || static_cast<QWidget *>(object)->window() == m_window;
        return false;
    }

    /** Ends the process at once: the end of a program is no part of its start. */
    int run()
    {
        QTimer idle;
        connect(&idle, &QTimer::timeout, this, [this] {
            // The splash screen may have waited for the first paint before.
            if (m_isPainted)
                _exit(0);
        });
        idle.start(0);
        return QApplication::exec();
    }

private:
    const QWidget *m_window;
    bool m_isPainted = false;
};

int runEmpty(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QMainWindow window;
    window.resize(768, 589);
    EndAfterPaint end(&window);
    window.show();
    return end.run();
}

void useSettingsIn(const QString &folder)
{
    QCoreApplication::setApplicationName(Constants::applicationName);
    QCoreApplication::setOrganizationName(Constants::organizationName);
    QSettings::setDefaultFormat(QSettings::IniFormat);
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, folder);
}

/** The steps of the program's main(), without the crash writer and the quick start guide. */
int runProgram(int argc, char *argv[], const QString &settings, const QString &database)
{
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QApplication application(argc, argv);
    initResources();
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/icons/vorna.png")));
    useSettingsIn(settings);
    registerMetaTypes();
    QSplashScreen splash(QPixmap(QStringLiteral(":misc/vornaSplash.png")));
    splash.show();
    splash.showMessage(QObject::tr("Opening database..."), Qt::AlignRight, Qt::black);
    QFile style(QStringLiteral(":/misc/styleSheet.txt"));
    if (style.open(QIODevice::ReadOnly | QIODevice::Text))
        application.setStyleSheet(QTextStream(&style).readAll());
    MainWindow window;
    window.openStartupDatabase(database);
    if (!window.collection())
        qFatal("%s cannot be opened", qPrintable(database));
    EndAfterPaint end(&window);
    window.show();
    splash.finish(&window);
    return end.run();
}

void makeCollectionOf(const QString &path, int files)
{
    const std::unique_ptr<Collection> maker(makeCollection(Constants::localDatabase, {}, path, {}, {}, 0));
    if (!maker->createDatabase())
        qFatal("%s cannot be made", qPrintable(path));
    const QString name = QStringLiteral("maker");
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(Constants::sqliteDriver, name);
        database.setDatabaseName(path);
        database.open();
        const QString numbers = QStringLiteral(
            "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<%1) INSERT INTO ");
        QSqlQuery query(database);
        const auto fill = [&](int count, const char *rows) {
            if (!query.exec(numbers.arg(count) + QLatin1String(rows)))
                qFatal("%s", rows);
        };
        fill(files, "files SELECT i,'Photo of the day '||i||'.jpg','',1000+i,1500000000+i,1400000000+i,"
                    "printf('%07d',i),1+i/1000,i,0,i,0 FROM n");
        fill(files, "file_paths SELECT i,'/home/someone/pictures/Photo of the day '||i||'.jpg',"
                    "'pictures/Photo of the day '||i||'.jpg' FROM n");
        fill(300, "tags SELECT i,'tag '||i,'',0,NULL FROM n");
        fill(files, "file_tag SELECT i,1+i%300 FROM n");
        fill(files, "file_tag SELECT i,1+(i*7+1)%300 FROM n WHERE 1+(i*7+1)%300<>1+i%300");
    }
    QSqlDatabase::removeDatabase(name);
}

/** 5,000 tags and as many nodes on three levels, 1,000 relationships. */
void addTrees(const QString &path)
{
    const QString name = QStringLiteral("maker");
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(Constants::sqliteDriver, name);
        database.setDatabaseName(path);
        database.open();
        database.transaction();
        QSqlQuery query(database);
        const auto fill = [&](int first, int last, const char *rows) {
            const QString numbers =
                QStringLiteral("WITH RECURSIVE n(i) AS (SELECT %1 UNION ALL SELECT i+1 FROM n "
                               "WHERE i<%2) INSERT INTO ")
                    .arg(first)
                    .arg(last);
            if (!query.exec(numbers + QLatin1String(rows)))
                qFatal("%s", rows);
        };
        fill(301, 5000, "tags SELECT i,'tag '||i,'',0,NULL FROM n");
        fill(1, 5000, "tb_nodes SELECT i,i,1,0 FROM n");
        fill(1, 5000, "tb_node_links SELECT CASE WHEN i<=50 THEN 0 ELSE 1+(i-51)/10 END,i FROM n");
        fill(1, 50, "tag_relationships SELECT i FROM n");
        fill(51, 1000, "tag_relationships SELECT (1+i%50)||'.'||i FROM n");
        database.commit();
    }
    QSqlDatabase::removeDatabase(name);
}

/** Runs this program with arguments and gives the CPU seconds that it took. */
double childSeconds(const QStringList &arguments)
{
    const pid_t child = fork();
    if (child == 0) {
        std::vector<QByteArray> texts{QFile::encodeName(QCoreApplication::applicationFilePath())};
        for (const QString &argument : arguments)
            texts.push_back(QFile::encodeName(argument));
        std::vector<char *> pointers;
        pointers.reserve(texts.size() + 1);
        for (QByteArray &text : texts)
            pointers.push_back(text.data());
        pointers.push_back(nullptr);
        const int silence = open("/dev/null", O_WRONLY);
        dup2(silence, STDERR_FILENO);
        execv(pointers.front(), pointers.data());
        _exit(127);
    }
    int status = 0;
    rusage usage{};
    wait4(child, &status, 0, &usage);
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0)
        qFatal("a start failed");
    const auto seconds = [](const timeval &time) { return double(time.tv_sec) + double(time.tv_usec) / 1e6; };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values.at(values.size() / 2);
}

} // namespace

int main(int argc, char *argv[])
{
    if (argc == 2 && qstrcmp(argv[1], "empty") == 0)
        return runEmpty(argc, argv);
    if (argc == 4 && qstrcmp(argv[1], "window") == 0)
        return runProgram(argc, argv, QString::fromLocal8Bit(argv[2]), QString::fromLocal8Bit(argv[3]));

    QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addPositionalArgument(QStringLiteral("demo"), QStringLiteral("The demo database."));
    parser.addOption({QStringLiteral("rounds"), QStringLiteral("How many starts of each kind."),
                      QStringLiteral("count"), QStringLiteral("15")});
    parser.process(application);
    const int rounds = qMax(1, parser.value(QStringLiteral("rounds")).toInt());
    const QString demo = parser.positionalArguments().value(0, QCoreApplication::applicationDirPath() +
                                                                   QStringLiteral("/../demo.vrn"));

    const QTemporaryDir folder;
    const QString copy = folder.filePath(QStringLiteral("demo.vrn"));
    if (!QFile::copy(demo, copy))
        qFatal("%s cannot be read", qPrintable(demo));
    const QString large = folder.filePath(QStringLiteral("large.vrn"));
    makeCollectionOf(large, smallCollection);
    const QString trees = folder.filePath(QStringLiteral("trees.vrn"));
    makeCollectionOf(trees, 1);
    addTrees(trees);

    // In turn, so that other load on the machine meets all alike.
    std::vector<double> empty;
    std::vector<double> withDemo;
    std::vector<double> withLarge;
    std::vector<double> withTrees;
    for (int round = 0; round < rounds; ++round) {
        empty.push_back(childSeconds({QStringLiteral("empty")}));
        withDemo.push_back(childSeconds({QStringLiteral("window"), folder.path(), copy}));
        withLarge.push_back(childSeconds({QStringLiteral("window"), folder.path(), large}));
        withTrees.push_back(childSeconds({QStringLiteral("window"), folder.path(), trees}));
    }
    QTextStream out(stdout);
    const double reference = median(empty);
    const auto row = [&](const QString &name, double seconds) {
        out << name.leftJustified(28) << QString::number(seconds * 1000, 'f', 0).rightJustified(6) << "    "
            << QString::number(seconds / reference, 'f', 2) << "\n";
    };
    out << "median of " << rounds << " starts on the platform "
        << (qEnvironmentVariableIsSet("QT_QPA_PLATFORM") ? qEnvironmentVariable("QT_QPA_PLATFORM")
                                                         : QStringLiteral("xcb"))
        << "\n";
    out << "work                         CPU ms   ratio\n";
    row(QStringLiteral("empty QMainWindow"), reference);
    row(QStringLiteral("start on the demo database"), median(withDemo));
    row(QStringLiteral("start on 10,000 files"), median(withLarge));
    row(QStringLiteral("start on 5,000 tags, nodes"), median(withTrees));
    return 0;
}
