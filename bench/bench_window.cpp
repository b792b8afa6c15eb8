// The real window over a million files and 5,000 tags: what each action costs until the window has settled,
// and for how long the event loop stood still meanwhile, beside the least work that the action needs. Runs on
// the offscreen platform, on a copy of the sample library, with settings of its own.
#include "app/settings/constants.h"
#include "app/settings/windowsettings.h"
#include "bench/actiontable.h"
#include "bench/flatlibrary.h"
#include "bench/openwindow.h"
#include "bench/samplelibrary.h"
#include "bench/tagactions.h"
#include "core/controllers/browstreecontroller.h"
#include "core/controllers/collection.h"
#include "core/controllers/mainviewcontroller.h"
#include "core/controllers/metatypes.h"
#include "core/controllers/tagscontroller.h"
#include "models/contents/contentsmodel.h"
#include "models/contents/sorter.h"
#include "resources/resources.h"
#include "ui/views/mainfilesview.h"
#include "ui/views/tbtreeview.h"
#include "ui/widgets/tableview.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QMimeData>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <cstdio>
#include <functional>

namespace {

constexpr int manyFiles = 10000;

// Keeps the optimizer from leaving work out.
volatile qint64 sink = 0;

void benchSelections(ActionTable &table, OpenWindow &window, const FlatLibrary &flat, const QString &suffix)
{
    const auto count = [&flat] { sink = sink + flat.countTags(); };
    const auto nothing = [&window] { window.showNothing(); };
    const auto row = [&](const char *name, const std::function<void()> &act) {
        table.run({QLatin1String(name) + suffix, nothing, act, count});
    };
    row("click on a node", [&window] { window.clickNode(window.node(2)); });
    row("click on a node three levels down", [&window] { window.clickNode(window.node(1100)); });
    row("AND of two tags", [&window] { window.tags->showTagsSelected({1, 2}); });
    row("OR of three tags", [&window] { window.tags->showTagsEitherOr({1, 2, 3}); });
    row("all files", [&window] { window.showAll(); });
}

/** With all 5,000 nodes open, of which some dozens are on the screen. */
void benchCounts(ActionTable &table, OpenWindow &window, const FlatLibrary &flat)
{
    const auto count = [&flat] { sink = sink + flat.countTags(); };
    const auto countFiles = [&window](bool on) { window.tree->collection()->countFiles(on); };
    const auto click = [&window] { window.clickNode(window.node(2)); };
    window.settle([&window] { window.nodes->expandAll(); });
    const auto prepare = [&window, countFiles](bool on) {
        countFiles(on);
        window.showNothing();
    };
    table.run({QStringLiteral("click on a node, all nodes open"), [=] { prepare(true); }, click, count});
    table.run({QStringLiteral("click on a node, no file counts"), [=] { prepare(false); }, click, count});
    table.run(
        {QStringLiteral("switch file counts on"), [=] { prepare(false); }, [=] { countFiles(true); }, count});
    window.settle([&window, countFiles] {
        countFiles(true);
        window.nodes->collapseAll();
    });
}

void benchSorting(ActionTable &table, OpenWindow &window, const FlatLibrary &flat)
{
    // An order that is known already would be taken over.
    const auto unsorted = [&window] {
        window.sort(ContentsModel::LoadIdColumn);
        window.unsort();
        window.showAll();
    };
    const auto names = [&flat] { sink = sink + flat.sortByNames(); };
    const auto numbers = [&flat] { sink = sink + flat.sortByNumbers(); };
    const auto row = [&](const char *name, int column, const std::function<void()> &reference) {
        table.run({QLatin1String(name), unsorted, [&window, column] { window.sort(column); }, reference});
    };
    row("sort by name", ContentsModel::NameColumn, names);
    row("sort by date", ContentsModel::ModificationDateColumn, numbers);
    row("sort by size", ContentsModel::SizeColumn, numbers);
    row("sort by type", ContentsModel::TypeColumn, names);
    row("sort by tags", ContentsModel::TagsColumn, names);
    table.run({QStringLiteral("turn the order by name round"),
               [&window] { window.sort(ContentsModel::NameColumn); },
               [&window] { window.sort(ContentsModel::NameColumn, Qt::DescendingOrder); }, numbers});
    window.unsort();
}

void benchSearch(ActionTable &table, OpenWindow &window, const FlatLibrary &flat)
{
    QLineEdit *field = window.edit("SearchFilesBar");
    if (!field)
        qFatal("no search field");
    const auto clear = [&window, field] {
        field->clear();
        window.showAll();
    };
    for (const char *text : {"report", "12345", "nothing has this", "x"}) {
        const QString wanted = QLatin1String(text);
        const QString name = QStringLiteral("search \"%1\", ").arg(wanted);
        const auto reference = [&flat, wanted] { sink = sink + flat.search(wanted); };
        table.run({name + QLatin1String("typing"), clear,
                   [field, wanted] { QTest::keyClicks(field, wanted); }, reference});
        table.run({name + QLatin1String("Return"),
                   [clear, field, wanted] {
                       clear();
                       field->setText(wanted);
                   },
                   [field] { QTest::keyClick(field, Qt::Key_Return); }, reference});
    }
    window.settle(clear);
}

/** Makes a folder of a thousand small files, never the same bytes twice. */
QString makeFolder(const QTemporaryDir &folder, int number)
{
    constexpr int files = 1000;
    QString path = folder.filePath(QStringLiteral("new %1").arg(number));
    QDir().mkpath(path);
    for (int i = 0; i < files; ++i) {
        QFile file(path + QStringLiteral("/Fresh_file %1.txt").arg(i));
        file.open(QIODevice::WriteOnly);
        file.write(QByteArray("file ") + QByteArray::number(number) + ' ' + QByteArray::number(i));
    }
    return path;
}

/** The same rows by plain sqlite3 in one transaction, each file read once. */
void addPlainly(OpenWindow &window, const QString &folder)
{
    window.runPlain(QStringLiteral("BEGIN IMMEDIATE"));
    const QStringList names = QDir(folder).entryList(QDir::Files, QDir::Unsorted);
    for (const QString &name : names) {
        QFile file(folder + QLatin1Char('/') + name);
        file.open(QIODevice::ReadOnly);
        const QByteArray bytes = file.readAll();
        window.runPlain(QStringLiteral("INSERT INTO files SELECT MAX(file_id)+1,'%1','',%2,1,1,"
                                       "printf('z%06d',MAX(file_id)),1,MAX(file_id)+1,0,1,0 FROM files")
                            .arg(name)
                            .arg(bytes.size()));
        window.runPlain(QStringLiteral("INSERT INTO file_paths SELECT MAX(file_id),'%1/%2','%2' FROM files")
                            .arg(folder, name));
        window.runPlain(QStringLiteral("INSERT INTO file_tag SELECT MAX(file_id),1 FROM files"));
    }
    window.runPlain(QStringLiteral("COMMIT"));
}

void benchAdding(ActionTable &table, OpenWindow &window, const QTemporaryDir &folder, const char *name)
{
    static int number = 0;
    static QString path;
    table.run({QLatin1String(name),
               [&window, &folder] {
                   path = makeFolder(folder, ++number);
                   window.showAll();
               },
               [&window] { window.files->addUrls({QUrl::fromLocalFile(path)}, {1}); },
               [&window] { addPlainly(window, path); }});
}

QString idList(const QVector<qint64> &ids)
{
    QStringList texts;
    for (const qint64 id : ids)
        texts.append(QString::number(id));
    return texts.join(QLatin1Char(','));
}

void benchManyFiles(ActionTable &table, OpenWindow &window, const FlatLibrary &flat, const QString &suffix)
{
    constexpr int from = 20000;
    constexpr qint64 tag = 4999;
    const auto visit = [&flat] { sink = sink + flat.visitAll(); };
    const auto show = [&window] {
        window.showAll();
        window.table->clearSelection();
    };
    const auto selected = [&window, show] {
        show();
        window.select(from, manyFiles);
    };
    const auto ids = [&window] { return window.idsOfRows(from, manyFiles); };
    const auto plainly = [&window, ids](const char *statement) {
        window.runPlain(QString::fromLatin1(statement).arg(idList(ids())));
    };
    const char *const tagPlainly =
        "INSERT OR IGNORE INTO file_tag SELECT file_id,4999 FROM files WHERE file_id IN (%1)";
    const char *const untagPlainly = "DELETE FROM file_tag WHERE tag_id=4999 AND file_id IN (%1)";
    table.run(
        {QStringLiteral("select all files (Ctrl+A)"), show, [&window] { window.table->selectAll(); }, visit});
    table.run(
        {QStringLiteral("all selected: begin a drag"), [&window] { window.table->selectAll(); },
         [&window] { delete window.files->sorter()->dragData(window.table->selectionModel()->selection()); },
         visit});
    table.run({QLatin1String("all selected: another node") + suffix,
               [&window, show] {
                   show();
                   window.table->selectAll();
               },
               [&window] { window.clickNode(window.node(2)); }, [&flat] { sink = sink + flat.countTags(); }});
    table.run(
        {QStringLiteral("select 10,000 files"), show, [&window] { window.select(from, manyFiles); }, visit});
    table.run({QLatin1String("tag 10,000 selected files") + suffix,
               [=, &window] {
                   window.files->unlinkTags(ids(), {tag});
                   plainly(untagPlainly);
                   selected();
               },
               [=, &window] { window.files->linkTags(ids(), {tag}); }, [=] { plainly(tagPlainly); }});
    table.run({QLatin1String("untag 10,000 selected files") + suffix,
               [=, &window] {
                   window.files->linkTags(ids(), {tag});
                   plainly(tagPlainly);
                   selected();
               },
               [=, &window] { window.files->unlinkTags(ids(), {tag}); }, [=] { plainly(untagPlainly); }});
    table.run({QLatin1String("delete 10,000 selected files") + suffix, selected,
               [&window] { window.mainView->deleteSelectedItems(); },
               [=, &window] {
                   window.runPlain(QStringLiteral("BEGIN"));
                   plainly("DELETE FROM file_tag WHERE file_id IN (%1)");
                   plainly("DELETE FROM file_paths WHERE path_id IN (%1)");
                   plainly("DELETE FROM files WHERE file_id IN (%1)");
                   window.runPlain(QStringLiteral("COMMIT"));
               }});
}

/** Files by the worker, as every selection of more than some thousands. */
void benchAllFiles(ActionTable &table, OpenWindow &window)
{
    constexpr qint64 tag = 4998;
    const auto ids = [&window] {
        return window.idsOfRows(0, window.files->contentsModel()->fileIndex().size());
    };
    const auto link = [=, &window] { window.files->linkTags(ids(), {tag}); };
    const auto unlink = [=, &window] { window.files->unlinkTags(ids(), {tag}); };
    const auto linkPlainly = [&window] {
        window.runPlain(QStringLiteral("INSERT OR IGNORE INTO file_tag SELECT file_id,4998 FROM files"));
    };
    const auto unlinkPlainly = [&window] {
        window.runPlain(QStringLiteral("DELETE FROM file_tag WHERE tag_id=4998"));
    };
    table.run({QStringLiteral("tag all files"),
               [=, &window] {
                   unlink();
                   unlinkPlainly();
                   window.showAll();
               },
               link, linkPlainly});
    table.run({QStringLiteral("untag all files"),
               [=, &window] {
                   link();
                   linkPlainly();
                   window.showAll();
               },
               unlink, unlinkPlainly});
}

void benchAll(ActionTable &table, OpenWindow &window, const FlatLibrary &flat, const QTemporaryDir &folder)
{
    window.settle([&window] { window.mainView->iconViewSelected(false); });
    benchSelections(table, window, flat, QString());
    benchSearch(table, window, flat);
    benchSorting(table, window, flat);
    window.settle([&window] { window.sort(ContentsModel::NameColumn); });
    benchSelections(table, window, flat, QStringLiteral(", sorted by name"));
    benchAdding(table, window, folder, "add 1,000 files, sorted by name");
    window.settle([&window] { window.unsort(); });
    benchAdding(table, window, folder, "add 1,000 files");
    TagActions tagActions(table, window, flat);
    tagActions.run();
    benchManyFiles(table, window, flat, QString());
    benchAllFiles(table, window);
    window.settle([&window] { window.mainView->iconViewSelected(true); });
    benchSelections(table, window, flat, QStringLiteral(", thumbnails"));
    benchAdding(table, window, folder, "add 1,000 files, thumbnails");
    benchManyFiles(table, window, flat, QStringLiteral(", thumbnails"));
    window.settle([&window] { window.mainView->iconViewSelected(false); });
    tagActions.runMany();
    benchCounts(table, window, flat);
}

void print(const char *work, const Settling::Cost &cost)
{
    std::printf("%-44s %9s %9.1f %7s %9.1f %10.1f\n", work, "", cost.cpuSeconds * 1000, "",
                cost.wallSeconds * 1000, cost.freezeSeconds * 1000);
    std::fflush(stdout);
}

QStringList namesOfTags(const OpenWindow &window)
{
    QStringList names;
    for (qint64 tag = 1; tag <= SampleLibrary::tagCount; ++tag)
        names.append(window.tags->tagName(tag));
    return names;
}

} // namespace

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_LOGGING_RULES", "default.debug=false");
    QApplication application(argc, argv);
    initResources();
    const QTemporaryDir settings;
    QCoreApplication::setApplicationName(Constants::applicationName);
    QCoreApplication::setOrganizationName(Constants::organizationName);
    QSettings::setDefaultFormat(QSettings::IniFormat);
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, settings.path());
    registerMetaTypes();
    WindowSettings::setFileSearchLineVisible(true);

    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addOptions({{QStringLiteral("dir"), QStringLiteral("Where the database is kept between runs."),
                        QStringLiteral("dir"), QDir::tempPath() + QStringLiteral("/vorna-bench")},
                       {QStringLiteral("files"), QStringLiteral("How many files."), QStringLiteral("count"),
                        QStringLiteral("1000000")},
                       {QStringLiteral("rounds"), QStringLiteral("How often each action is run."),
                        QStringLiteral("count"), QStringLiteral("3")},
                       {QStringLiteral("only"), QStringLiteral("Only actions with this text in their name."),
                        QStringLiteral("text")}});
    parser.process(application);
    const QString dir = parser.value(QStringLiteral("dir"));
    const int files = std::max(2 * manyFiles, parser.value(QStringLiteral("files")).toInt());
    const QString library = SampleLibrary::preparedIn(dir, files);
    const QTemporaryDir folder(dir + QStringLiteral("/window-XXXXXX"));

    QElapsedTimer opening;
    opening.start();
    OpenWindow window(library, folder);
    const FlatLibrary flat(*window.files->contentsModel(), namesOfTags(window));
    std::printf("%d files, %d tags, open after %.1f s\n\n", flat.size(), SampleLibrary::tagCount,
                double(opening.elapsed()) / 1000);
    ActionTable table(window, std::max(1, parser.value(QStringLiteral("rounds")).toInt()),
                      parser.value(QStringLiteral("only")));
    print("open", window.opening());
    benchAll(table, window, flat, folder);
    window.settle([&window] { window.showAll(); });
    print("read all anew", window.reload());
    print("close", window.close());
    return 0;
}
