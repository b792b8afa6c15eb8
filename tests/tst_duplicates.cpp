#include "app/settings/addingsettings.h"
#include "fileops/duplicates/duplicatechoice.h"
#include "fileops/duplicates/duplicatemanager.h"
#include "fileops/worker/postgresfileoperationworker.h"
#include "fileops/worker/sqlitefileoperationworker.h"
#include "tests/support/addingfixture.h"
#include "tests/support/serverdatabase.h"

namespace {
// Eight bytes each, different, and of one checksum.
const QByteArray forgedOne("\x01\x10ZZZZZZ", 8);
const QByteArray forgedOther("\x02\x00ZZZZZZ", 8);
// Of one checksum, but not of one size.
const QByteArray shorter("1");
const QByteArray longer("\0001", 2);

QStringList split(const QString &text)
{
    return text.split(QLatin1Char(';'), Qt::SkipEmptyParts);
}

QString names(const QVector<DuplicateFileInfo> &infos)
{
    QStringList result;
    for (const DuplicateFileInfo &info : infos)
        result.append(info.path.section(QLatin1Char('/'), -1));
    return result.join(QLatin1Char(','));
}

QStringList linesOf(const PresentableDuplicates &found)
{
    QStringList lines;
    for (const DuplicateMatch &match : found.contentMatches)
        lines.append("content "_s + names(match.databaseFiles) + QLatin1Char(':') + names(match.addedFiles));
    for (const DuplicateMatch &match : found.nameMatches)
        lines.append("name "_s + names(match.databaseFiles) + QLatin1Char(':') + names(match.addedFiles));
    const QStringList outcomes{"group "_s, "group of a shared name "_s, "group without one "_s};
    for (const ExternalDuplicateGroup &group : found.externalDuplicateGroups)
        lines.append(outcomes.at(group.outcome) + names({group.keptFile}) + QLatin1Char(':') +
                     names(group.ignoredFiles));
    return lines;
}
} // namespace

class TestDuplicates : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase_data() { addBackEnds(); }

    void chooser_data()
    {
        addColumns<QString, int>("group", "kept");
        addRow("numbered copy", "/a/report - 2.doc;/a/report.doc"_s, 1);
        addRow("copy of", "/a/Copy of report.doc;/a/report.doc;/a/report - 2.doc"_s, 1);
        addRow("copy in the folder does not count", "/copy/b.doc;/a/copy.doc"_s, 0);
        addRow("copy in another case", "/a/x COPY.doc;/a/xxxxxxx.doc"_s, 1);
        addRow("digits lose against words", "/a/12345.jpg;/a/holiday.jpg"_s, 1);
        addRow("half digits are not most", "/a/1234.jpg;/a/ab12.jpg"_s, 1);
        addRow("fewest letters", "/a/a.c;/a/abc.c"_s, 1);
        addRow("letters count in the name only", "/aaaaaaa/b.c;/z/bbb.c"_s, 1);
        addRow("first of equals", "/b/same.txt;/a/same.txt"_s, 1);
        addRow("alone", "/a/copy - 1.txt"_s, 0);
        addRow("minus without blank is no number", "/a/report -2.doc;/a/reportxx.doc"_s, 1);
    }

    void chooser()
    {
        QFETCH(QString, group);
        QFETCH(int, kept);
        QCOMPARE(chooseFileToKeep(split(group)), split(group).at(kept));
    }

    void grouping_data()
    {
        addColumns<QVector<QByteArray>, QString, QString>("contents", "added", "lines");
        using Contents = QVector<QByteArray>;
        addRow("nothing", Contents(), ""_s, ""_s);
        addRow("all different", Contents{"1", "2", "3"}, "a0;a1;a2"_s, ""_s);
        addRow("three equal", Contents{"1", "1", "1"}, "a1"_s, "group a1:a0,a2"_s);
        addRow("order", Contents{"9", "1", "9", "1", "5"}, "a2;a3;a4"_s, "group a2:a0;group a3:a1"_s);
        addRow("forged", Contents{forgedOne, forgedOther}, "a0;a1"_s, ""_s);
        addRow("forged pairs", Contents{forgedOne, forgedOther, forgedOther, forgedOne}, "a2;a3"_s,
               "group a3:a0;group a2:a1"_s);
        addRow("of another size", Contents{shorter, longer}, "a0;a1"_s, ""_s);
        addRow("empty", Contents{"", ""}, "a1"_s, "group a1:a0"_s);
        // Too much to be held in memory: read side by side.
        const QByteArray x(3 * 1024 * 1024, 'x');
        addRow("large", Contents{x + forgedOne, x + forgedOther, x + forgedOne}, "a1;a2"_s, "group a2:a0"_s);
    }

    void grouping()
    {
        QFETCH(QVector<QByteArray>, contents);
        QFETCH(QString, added);
        QFETCH(QString, lines);
        AddingFixture fixture(makeTestDatabase());
        QStringList paths;
        for (int i = 0; i < contents.size(); ++i)
            paths.append(fixture.write("a%1"_s.arg(i), contents.at(i)));
        const Run run = runOn(fixture, paths);
        QVERIFY(run.answer);
        QStringList expected;
        for (const QString &name : split(added))
            expected.append(fixture.path(name));
        QCOMPARE(run.out, expected);
        QCOMPARE(linesOf(run.found), split(lines));
        QCOMPARE(run.kept.size(), run.found.externalDuplicateGroups.size());
    }

    void databaseMatches_data()
    {
        addColumns<bool, QByteArray, QByteArray, bool>("isLinking", "stored", "dropped", "matches");
        const QByteArray block = QByteArray(10000000, 'x') + "tail of a second block";
        for (const bool isLinking : {true, false}) {
            const auto row = [&](const char *name, const QByteArray &stored, const QByteArray &dropped,
                                 bool matches) {
                QTest::addRow("%s, %d", name, isLinking) << isLinking << stored << dropped << matches;
            };
            row("equal", "same", "same", true);
            row("both empty", "", "", true);
            row("forged checksum", forgedOne, forgedOther, false);
            row("other size of one checksum", shorter, longer, false);
            row("two blocks, equal", block + forgedOne, block + forgedOne, true);
            row("two blocks, forged in the second", block + forgedOne, block + forgedOther, false);
        }
    }

    void databaseMatches()
    {
        QFETCH(bool, isLinking);
        QFETCH(QByteArray, stored);
        QFETCH(QByteArray, dropped);
        QFETCH(bool, matches);
        AddingFixture fixture(makeTestDatabase());
        AddingSettings::setLinkToFiles(isLinking);
        fixture.add({fixture.write("old"_s, stored)});
        const QString one = fixture.write("new1"_s, dropped);
        const QString two = fixture.write("new2"_s, dropped);
        const Run run = runOn(fixture, {one, two});
        QCOMPARE(linesOf(run.found), QStringList(matches ? "content old:new1,new2"_s : "group new2:new1"_s));
        QCOMPARE(run.out, matches ? QStringList() : QStringList(two));
    }

    void unreadableSideIsSettledByChecksum()
    {
        AddingFixture fixture(makeTestDatabase());
        const QString old = fixture.write("old"_s, forgedOne);
        fixture.add({old});
        QVERIFY(QFile::remove(old));
        const QString dropped = fixture.write("new"_s, forgedOther);
        QCOMPARE(linesOf(runOn(fixture, {dropped}).found), QStringList("content old:new"_s));
    }

    void checksNamesWhenAsked()
    {
        AddingFixture fixture(makeTestDatabase());
        fixture.add({fixture.write("db/o'ld"_s, "0")});
        const QStringList paths{fixture.write("x/a"_s, "1"), fixture.write("x/b"_s, "2"),
                                fixture.write("x/o'ld"_s, "3"), fixture.write("y/a"_s, "4")};
        QCOMPARE(runOn(fixture, paths, false).out, paths);
        const Run run = runOn(fixture, paths, true);
        QCOMPARE(linesOf(run.found), QStringList({"name :a,a"_s, "name o'ld:o'ld"_s}));
        QCOMPARE(run.out, QStringList(paths.at(1)));
    }

    void keptFileMayBeLeftOutLater()
    {
        AddingFixture fixture(makeTestDatabase());
        QSettings().setValue("PreferencesDialog/checkForNameDuplicates"_s, true);
        fixture.add({fixture.write("db/name"_s, "0")});
        QVERIFY(fixture.database().refuse("INSERT ON files"_s, "new.file_name='no'"_s));
        QStringList paths;
        for (const QString &name : {"name"_s, "no"_s, "yes"_s}) {
            for (const char *folder : {"x/", "y/copy of "})
                paths.append(fixture.write(QLatin1String(folder) + name, name.toUtf8()));
        }
        fixture.add(paths);
        QCOMPARE(linesOf(fixture.duplicates()),
                 QStringList({"name name:name"_s, "group of a shared name name:copy of name"_s,
                              "group yes:copy of yes"_s}));
        // The other one of the same contents takes its place, with the tags of both.
        QCOMPARE(Sql::rows("SELECT file_name FROM files ORDER BY 1"),
                 QStringList({"copy of no"_s, "name"_s, "yes"_s}));
    }

    void failedQueryAddsNothing()
    {
        AddingFixture fixture(makeTestDatabase());
        const QString statement = "ALTER TABLE files RENAME COLUMN data_checksum TO gone"_s;
        QVERIFY(fixture.isLocal() ? Sql::run(statement)
                                  : static_cast<ServerDatabase &>(fixture.database()).owner().run(statement));
        QSignalSpy told(&fixture.provider(), &FileOperationProvider::fellShort);
        QSignalSpy reports(&fixture.provider(), &FileOperationProvider::duplicatesReady);
        fixture.add({fixture.write("a"_s, "1")});
        QCOMPARE(told.size(), 1);
        const auto shortfall = told.first().first().value<OperationShortfall>();
        QCOMPARE(shortfall.errors.size(), 1);
        QVERIFY(shortfall.outcome.startsWith("A database-related duplicate management error"_s));
        QCOMPARE(reports.size(), 0);
        QCOMPARE(Sql::count("files"_s), 0);
    }

    void copiesKeepAllTags()
    {
        AddingFixture fixture(makeTestDatabase());
        fixture.write("top/one/report.doc"_s, "same");
        fixture.write("top/two/Copy of report.doc"_s, "same");
        fixture.add({fixture.path("top"_s)}, {}, true, 0);
        QCOMPARE(fixture.taggedNames(), QStringList("report.doc: one,top,two"_s));
        QCOMPARE(fixture.duplicates().externalDuplicateGroups.value(0).ignoredFiles.value(0).tagNames.size(),
                 2);
    }

private:
    struct Run
    {
        bool answer = false;
        QStringList out;
        QStringList kept;
        QHash<QString, QStringList> inherited;
        PresentableDuplicates found;
    };
    /** What the check says of files, on the test's own thread. */
    static Run runOn(AddingFixture &fixture, const QStringList &paths, bool checkNames = false)
    {
        if (!QSqlDatabase::contains(Constants::workerConnection))
            fixture.database().openWorkerConnection();
        if (fixture.isLocal())
            return runBy<SqliteFileOperationWorker>(fixture, paths, checkNames);
        return runBy<PostgresFileOperationWorker>(fixture, paths, checkNames);
    }
    template <class Worker>
    static Run runBy(AddingFixture &fixture, const QStringList &paths, bool checkNames)
    {
        Worker worker(Constants::workerConnection, fixture.details(), fixture.database().constructor());
        DuplicateManager manager;
        Run run;
        run.answer =
            manager.addFilesToDB(paths, checkNames, worker, run.out, run.kept, FolderTags(), run.inherited);
        run.found = manager.presentableDuplicates();
        if (manager.checksums().size() != run.out.size() && run.answer)
            qFatal("checksums do not stand beside the paths");
        worker.clearPrepared();
        return run;
    }
};

QTEST_GUILESS_MAIN(TestDuplicates)
#include "tst_duplicates.moc"
