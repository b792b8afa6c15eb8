// The real window over a million files and 5,000 tags: what each action costs until the window has settled,
// and for how long the event loop stood still meanwhile, beside the least work that the action needs. Runs on
// the offscreen platform, on a copy of the sample library, with settings of its own.
#include "app/constants.h"
#include "app/mainwindow.h"
#include "app/messages.h"
#include "app/windowsettings.h"
#include "bench/flatlibrary.h"
#include "bench/measure.h"
#include "bench/plaindatabase.h"
#include "bench/samplelibrary.h"
#include "bench/settling.h"
#include "core/collection.h"
#include "core/controllers/browstreecontroller.h"
#include "core/controllers/groupscontroller.h"
#include "core/controllers/mainviewcontroller.h"
#include "core/controllers/tagscontroller.h"
#include "core/metatypes.h"
#include "db/databasemanger.h"
#include "models/brtreesortermodel.h"
#include "models/contentsmodel.h"
#include "models/sorter.h"
#include "models/tagstablemodel.h"
#include "resources/resources.h"
#include "ui/docks/browsingtreeviewdock.h"
#include "ui/docks/tagstabledock.h"
#include "ui/views/listview.h"
#include "ui/views/mainfilesview.h"
#include "ui/views/speciallineedit.h"
#include "ui/views/tableview.h"
#include "ui/views/taggroupbar.h"
#include "ui/views/tbtreeview.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QElapsedTimer>
#include <QHeaderView>
#include <QMimeData>
#include <QSettings>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <memory>

namespace {

constexpr double longestFreeze = 0.25;
constexpr int manyFiles = 10000;

// Keeps the optimizer from leaving work out.
volatile qint64 sink = 0;

/** An action and its reference, both measured one after the other; prepare comes before them and is not. */
struct Action
{
    QString name;
    std::function<void()> prepare;
    std::function<void()> act;
    std::function<void()> reference;
};

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values.at(values.size() / 2);
}

QString in(const QTemporaryDir &folder, const char *name)
{
    return folder.filePath(QLatin1String(name));
}

/** The program with the sample library open, and the handles to its parts. */
class OpenWindow
{
public:
    OpenWindow(const QString &library, const QTemporaryDir &folder) : m_plainPath(in(folder, "plain.vrn"))
    {
        const QString path = in(folder, "window.vrn");
        QFile::copy(library, path);
        QFile::copy(library, m_plainPath);
        m_window.resize(1200, 800);
        m_window.show();
        if (!m_window.openDatabase(DBDetails::local(path)))
            qFatal("%s cannot be opened", qPrintable(path));
        Collection *collection = m_window.collection();
        files = collection->mainViewController();
        tags = collection->tagsController();
        groups = collection->groupsController();
        tree = collection->browsTreeController();
        manager = collection->findChild<DatabaseManger *>();
        mainView = m_window.findChild<MainFilesView *>();
        table = mainView->findChild<TableView *>();
        list = mainView->findChild<ListView *>();
        tagsDock = m_window.findChild<TagsTableDock *>();
        tagTable = tagsDock->findChild<TableView *>();
        tagTabs = tagsDock->findChild<TagGroupBar *>();
        nodes = m_window.findChild<TBtreeView *>();
        Messages::setResponder([](const Messages::Box &) { return Messages::Answer{QMessageBox::Ok, -1}; });
    }

    QLineEdit *edit(const char *bar)
    {
        auto *tools = m_window.findChild<QWidget *>(QLatin1String(bar));
        return tools ? tools->findChild<QLineEdit *>() : nullptr;
    }
    void settle(const std::function<void()> &action) { measure(action); }
    Settling::Cost measure(const std::function<void()> &action)
    {
        return Settling::run(action, [this] { return manager->isBusy(); });
    }
    QModelIndex node(qint64 id) { return tree->sorterModel()->indexOfNode(TagNode, id); }
    void clickNode(const QModelIndex &node)
    {
        nodes->setCurrentIndex(node);
        nodes->activatedNode(node);
    }
    void showNothing() { files->showSpecialNode(AllFilesWithoutTags); }
    void showAll() { files->showSpecialNode(AllFiles); }
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) { table->sortByColumn(column, order); }
    void unsort()
    {
        table->horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder);
        files->sorter()->sort(-1);
    }
    void select(int first, int count)
    {
        const QAbstractItemModel *model = table->model();
        const QItemSelection rows(model->index(first, 0), model->index(first + count - 1, 0));
        table->selectionModel()->select(rows,
                                        QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    }
    QVector<qint64> idsOfRows(int first, int count) const
    {
        QVector<qint64> ids;
        for (int row = first; row < first + count; ++row)
            ids.append(files->contentsModel()->fileIndex().idAt(row));
        return ids;
    }
    PlainDatabase &plain()
    {
        if (!m_plain)
            m_plain = std::make_unique<PlainDatabase>(QFile::encodeName(m_plainPath).constData());
        return *m_plain;
    }
    void runPlain(const QString &statement) { plain().run(statement.toUtf8().constData()); }

    MainViewController *files;
    TagsController *tags;
    GroupsController *groups = nullptr;
    BrowsTreeController *tree;
    DatabaseManger *manager;
    MainFilesView *mainView;
    TableView *table;
    ListView *list;
    TagsTableDock *tagsDock;
    TableView *tagTable;
    TagGroupBar *tagTabs;
    TBtreeView *nodes;

private:
    QString m_plainPath;
    std::unique_ptr<PlainDatabase> m_plain;
    MainWindow m_window;
};

class Benchmark
{
public:
    Benchmark(OpenWindow &window, int rounds, const QString &only)
        : m_window(window), m_rounds(rounds), m_only(only)
    {
        std::printf("%-44s %9s %9s %7s %9s %10s\n", "work", "plain ms", "cpu ms", "ratio", "wall ms",
                    "freeze ms");
    }

    void run(const Action &action)
    {
        if (!action.name.contains(m_only))
            return;
        std::vector<double> plain, cpu, wall, freeze;
        for (int round = 0; round < m_rounds; ++round) {
            m_window.settle(action.prepare);
            const double start = Measure::cpuSeconds();
            action.reference();
            plain.push_back(Measure::cpuSeconds() - start);
            const Settling::Cost cost = m_window.measure(action.act);
            cpu.push_back(cost.cpuSeconds);
            wall.push_back(cost.wallSeconds);
            freeze.push_back(cost.freezeSeconds);
        }
        const double reference = median(plain);
        const bool freezes = median(freeze) > longestFreeze && reference <= longestFreeze;
        std::printf("%-44s %9.2f %9.1f %7.2f %9.1f %10.1f%s\n", qPrintable(action.name), reference * 1000,
                    median(cpu) * 1000, median(cpu) / reference, median(wall) * 1000, median(freeze) * 1000,
                    freezes ? "  FREEZES" : "");
        std::fflush(stdout);
    }

private:
    OpenWindow &m_window;
    int m_rounds;
    QString m_only;
};

void benchSelections(Benchmark &bench, OpenWindow &window, const FlatLibrary &flat, const QString &suffix)
{
    const auto count = [&flat] { sink = sink + flat.countTags(); };
    const auto nothing = [&window] { window.showNothing(); };
    const auto row = [&](const char *name, const std::function<void()> &act) {
        bench.run({QLatin1String(name) + suffix, nothing, act, count});
    };
    row("click on a node", [&window] { window.clickNode(window.node(2)); });
    row("click on a node three levels down", [&window] { window.clickNode(window.node(1100)); });
    row("AND of two tags", [&window] { window.tags->showTagsSelected({1, 2}); });
    row("OR of three tags", [&window] { window.tags->showTagsEitherOr({1, 2, 3}); });
    row("all files", [&window] { window.showAll(); });
}

void benchSorting(Benchmark &bench, OpenWindow &window, const FlatLibrary &flat)
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
        bench.run({QLatin1String(name), unsorted, [&window, column] { window.sort(column); }, reference});
    };
    row("sort by name", ContentsModel::NameColumn, names);
    row("sort by date", ContentsModel::ModificationDateColumn, numbers);
    row("sort by size", ContentsModel::SizeColumn, numbers);
    row("sort by type", ContentsModel::TypeColumn, names);
    row("sort by tags", ContentsModel::TagsColumn, names);
    bench.run({QStringLiteral("turn the order by name round"),
               [&window] { window.sort(ContentsModel::NameColumn); },
               [&window] { window.sort(ContentsModel::NameColumn, Qt::DescendingOrder); }, numbers});
    window.unsort();
}

void benchSearch(Benchmark &bench, OpenWindow &window, const FlatLibrary &flat)
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
        bench.run({name + QLatin1String("typing"), clear,
                   [field, wanted] { QTest::keyClicks(field, wanted); }, reference});
        bench.run({name + QLatin1String("Return"),
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

void benchAdding(Benchmark &bench, OpenWindow &window, const QTemporaryDir &folder, const char *name)
{
    static int number = 0;
    static QString path;
    bench.run({QLatin1String(name),
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

void benchManyFiles(Benchmark &bench, OpenWindow &window, const FlatLibrary &flat, const QString &suffix)
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
    bench.run(
        {QStringLiteral("select all files (Ctrl+A)"), show, [&window] { window.table->selectAll(); }, visit});
    bench.run(
        {QStringLiteral("all selected: begin a drag"), [&window] { window.table->selectAll(); },
         [&window] { delete window.files->sorter()->dragData(window.table->selectionModel()->selection()); },
         visit});
    bench.run({QLatin1String("all selected: another node") + suffix,
               [&window, show] {
                   show();
                   window.table->selectAll();
               },
               [&window] { window.clickNode(window.node(2)); }, [&flat] { sink = sink + flat.countTags(); }});
    bench.run(
        {QStringLiteral("select 10,000 files"), show, [&window] { window.select(from, manyFiles); }, visit});
    bench.run({QLatin1String("tag 10,000 selected files") + suffix,
               [=, &window] {
                   window.files->unlinkTags(ids(), {tag});
                   plainly(untagPlainly);
                   selected();
               },
               [=, &window] { window.files->linkTags(ids(), {tag}); }, [=] { plainly(tagPlainly); }});
    bench.run({QLatin1String("untag 10,000 selected files") + suffix,
               [=, &window] {
                   window.files->linkTags(ids(), {tag});
                   plainly(tagPlainly);
                   selected();
               },
               [=, &window] { window.files->unlinkTags(ids(), {tag}); }, [=] { plainly(untagPlainly); }});
    bench.run({QLatin1String("delete 10,000 selected files") + suffix, selected,
               [&window] { window.mainView->deleteSelectedItems(); },
               [=, &window] {
                   window.runPlain(QStringLiteral("BEGIN"));
                   plainly("DELETE FROM file_tag WHERE file_id IN (%1)");
                   plainly("DELETE FROM file_paths WHERE path_id IN (%1)");
                   plainly("DELETE FROM files WHERE file_id IN (%1)");
                   window.runPlain(QStringLiteral("COMMIT"));
               }});
}

void benchTags(Benchmark &bench, OpenWindow &window, const FlatLibrary &flat)
{
    static int renaming = 0;
    const qint64 frequent = flat.tagOnFiles(100000);
    const auto rename = [&window, frequent](qint64 tag) {
        window.tags->renameTag(tag, QStringLiteral("renamed %1").arg(++renaming));
    };
    const auto renamePlainly = [&window](qint64 tag) {
        window.runPlain(QStringLiteral("UPDATE tags SET tag_name='renamed' WHERE tag_id=%1").arg(tag));
    };
    const auto all = [&window] { window.showAll(); };
    const auto filter = [&flat] { sink = sink + flat.filterTagNames(QStringLiteral("9")); };
    bench.run({QStringLiteral("rename a rare tag"), all, [rename] { rename(4000); },
               [renamePlainly] { renamePlainly(4000); }});
    bench.run({QStringLiteral("rename a tag of 100,000 files"), all, [rename, frequent] { rename(frequent); },
               [renamePlainly, frequent] { renamePlainly(frequent); }});
    const auto byTags = [&window] {
        window.showAll();
        window.sort(ContentsModel::TagsColumn);
    };
    bench.run({QStringLiteral("rename a rare tag, sorted by tags"), byTags, [rename] { rename(4000); },
               [renamePlainly] { renamePlainly(4000); }});
    bench.run({QStringLiteral("rename a tag of 100,000 files, sorted by tags"), byTags,
               [rename, frequent] { rename(frequent); },
               [renamePlainly, frequent] { renamePlainly(frequent); }});
    window.settle([&window] { window.unsort(); });
    bench.run({QStringLiteral("tag a file, with the column of files"),
               [&window] {
                   window.showAll();
                   window.tagTable->setColumnHidden(TagsTableModel::FilesColumn, false);
               },
               [&window] {
                   static bool isTagged = false;
                   const QVector<qint64> tag{4000};
                   isTagged = !isTagged;
                   window.files->changeTags({1}, isTagged ? tag : QVector<qint64>(),
                                            isTagged ? QVector<qint64>() : tag);
               },
               [&window] { window.runPlain(QStringLiteral("REPLACE INTO file_tag VALUES(1,4000)")); }});
    bench.run({QStringLiteral("select all 5,000 tags"), [&window] { window.tagTable->clearSelection(); },
               [&window] { window.tagTable->selectAll(); }, filter});
    bench.run({QStringLiteral("AND of all 5,000 tags"), all,
               [&window] {
                   window.tagTable->selectAll();
                   window.tagsDock->slotActivateTagsAnd();
               },
               [&flat] { sink = sink + flat.countTags(); }});
    bench.run({QStringLiteral("OR of all 5,000 tags"), all,
               [&window] {
                   window.tagTable->selectAll();
                   window.tagsDock->slotActivateTagsOr();
               },
               [&flat] { sink = sink + flat.countTags(); }});
    QLineEdit *field = window.edit("TagFilterBar");
    const auto noFilter = [field] { field->clear(); };
    bench.run({QStringLiteral("type a key into the tag filter"), noFilter,
               [field] { QTest::keyClick(field, '9'); }, filter});
    bench.run({QStringLiteral("empty the tag filter"), [field] { field->setText(QStringLiteral("xyz")); },
               noFilter, [&flat] { sink = sink + flat.sortTagNames(); }});
    bench.run({QStringLiteral("to a group's tab"), [&window] { window.tagTabs->setCurrentIndex(0); },
               [&window] { window.tagTabs->setCurrentIndex(5); }, filter});
    bench.run(
        {QStringLiteral("back to the tab of all tags"), [&window] { window.tagTabs->setCurrentIndex(5); },
         [&window] { window.tagTabs->setCurrentIndex(0); }, [&flat] { sink = sink + flat.sortTagNames(); }});
    bench.run({QStringLiteral("expand 5,000 nodes"), [&window] { window.nodes->collapseAll(); },
               [&window] { window.nodes->slotExpandAllFiles(); }, filter});
}

/** Tags and groups by the thousand, which are made behind the window's back. */
void benchManyTags(Benchmark &bench, OpenWindow &window)
{
    constexpr int tags = 2500;
    constexpr qint64 firstTag = 100001;
    constexpr qint64 firstGroup = 1001;
    const QString numbers = QStringLiteral("WITH RECURSIVE n(i) AS (SELECT %1 UNION ALL SELECT i+1 FROM n "
                                           "LIMIT %2) INSERT INTO %3");
    const auto run = [&numbers](qint64 from, int count, const char *insert) {
        QSqlQuery(QSqlDatabase::database()).exec(numbers.arg(from).arg(count).arg(QLatin1String(insert)));
    };
    QVector<qint64> tagIds, groupIds;
    for (int i = 0; i < 2 * tags; ++i)
        tagIds.append(i + 1);
    for (int i = 0; i < 20; ++i)
        groupIds.append(firstGroup + i);
    bench.run({QStringLiteral("assign 5,000 tags to 20 groups"),
               [&window, run, groupIds] {
                   window.manager->removeGroups(groupIds);
                   run(firstGroup, 20, "tag_groups SELECT i,'group '||i FROM n");
                   window.manager->loadAllGroups();
               },
               [&window, tagIds, groupIds] { window.groups->assignTags(tagIds, groupIds); },
               [&window] {
                   window.runPlain(QStringLiteral("REPLACE INTO tag_group_links SELECT tag_id,i FROM tags, "
                                                  "(WITH RECURSIVE n(i) AS (SELECT 1001 UNION ALL SELECT i+1 "
                                                  "FROM n LIMIT 20) SELECT i FROM n)"));
               }});
    QVector<qint64> freshIds;
    for (int i = 0; i < tags; ++i)
        freshIds.append(firstTag + i);
    const auto make = [run] {
        run(firstTag, tags, "tags SELECT i,'fresh '||i,'',0,NULL FROM n");
        run(firstTag, tags, "file_tag SELECT i-100000,i FROM n");
        run(firstTag, tags, "tag_group_links SELECT i,1 FROM n");
        run(firstTag, tags, "tb_nodes SELECT i,i,1,0 FROM n");
        run(firstTag, tags, "tb_node_links SELECT 0,i FROM n");
        run(firstTag, tags, "tag_relationships SELECT i FROM n");
    };
    bench.run({QStringLiteral("remove 2,500 tags"),
               [&window, make] {
                   make();
                   window.manager->reloadAllData();
                   window.showAll();
               },
               [&window, freshIds] { window.tags->removeTags(freshIds); },
               [&window] { window.runPlain(QStringLiteral("DELETE FROM tags WHERE tag_id>100000")); }});
}

void benchAll(Benchmark &bench, OpenWindow &window, const FlatLibrary &flat, const QTemporaryDir &folder)
{
    window.settle([&window] { window.mainView->iconViewSelected(false); });
    benchSelections(bench, window, flat, QString());
    benchSearch(bench, window, flat);
    benchSorting(bench, window, flat);
    window.settle([&window] { window.sort(ContentsModel::NameColumn); });
    benchSelections(bench, window, flat, QStringLiteral(", sorted by name"));
    benchAdding(bench, window, folder, "add 1,000 files, sorted by name");
    window.settle([&window] { window.unsort(); });
    benchAdding(bench, window, folder, "add 1,000 files");
    benchTags(bench, window, flat);
    benchManyFiles(bench, window, flat, QString());
    window.settle([&window] { window.mainView->iconViewSelected(true); });
    benchSelections(bench, window, flat, QStringLiteral(", thumbnails"));
    benchAdding(bench, window, folder, "add 1,000 files, thumbnails");
    benchManyFiles(bench, window, flat, QStringLiteral(", thumbnails"));
    window.settle([&window] { window.mainView->iconViewSelected(false); });
    benchManyTags(bench, window);
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
    Benchmark bench(window, std::max(1, parser.value(QStringLiteral("rounds")).toInt()),
                    parser.value(QStringLiteral("only")));
    benchAll(bench, window, flat, folder);
    return 0;
}
