#include "app/addingsettings.h"
#include "fileops/datachecksum.h"
#include "fileops/duplicatechoice.h"
#include "fileops/duplicatemanager.h"
#include "fileops/filecomparison.h"
#include "fileops/sqlitefileoperationworker.h"
#include "tests/support/addingfixture.h"

namespace {

/** Eight bytes each, different, and of one checksum. */
QPair<QByteArray, QByteArray> forgedPair()
{
    const QByteArray left("\x01\x10ZZZZZZ", 8);
    const QByteArray right("\x02\x00ZZZZZZ", 8);
    return {left, right};
}

QStringList linesOf(const PresentableDuplicates &found)
{
    QStringList lines;
    const auto names = [](const QList<DuplicateFileInfo> &infos) {
        QStringList result;
        for (const DuplicateFileInfo &info : infos)
            result.append(info.path.mid(info.path.lastIndexOf(QLatin1Char('/')) + 1));
        return result.join(QLatin1Char(','));
    };
    for (const DuplicateMatch &match : found.contentMatches)
        lines.append("content "_s + names(match.databaseFiles) + QLatin1Char(':') + names(match.addedFiles));
    for (const DuplicateMatch &match : found.nameMatches)
        lines.append("name "_s + names(match.databaseFiles) + QLatin1Char(':') + names(match.addedFiles));
    for (const ExternalDuplicateGroup &group : found.externalDuplicateGroups)
        lines.append("group "_s + names({group.keptFile}) + QLatin1Char(':') + names(group.ignoredFiles));
    return lines;
}

} // namespace

/** A worker that runs on the thread of the test, with its connection open. */
class OpenWorker : public SqliteFileOperationWorker
{
public:
    OpenWorker(const AddingFixture &fixture, const AbstractQueryConstructor *constructor)
        : SqliteFileOperationWorker(Constants::workerConnection, fixture.details(), constructor),
          m_connection(fixture.databasePath(), Constants::workerConnection)
    {
    }
    ~OpenWorker() override { clearPrepared(); }

private:
    OtherConnection m_connection;
};

class TestDuplicates : public QObject
{
    Q_OBJECT

private slots:
    void chooser_data()
    {
        addColumns<QStringList, int>("group", "kept");
        const auto row = [](const char *name, const QStringList &group, int kept) {
            addRow(name, group, kept);
        };
        const auto s = [](const char *text) { return QString::fromLatin1(text); };
        row("numbered copy", {s("/a/report - 2.doc"), s("/a/report.doc")}, 1);
        row("copy of", {s("/a/Copy of report.doc"), s("/a/report.doc"), s("/a/report - 2.doc")}, 1);
        row("copy in the folder does not count", {s("/copy/b.doc"), s("/a/copy.doc")}, 0);
        row("copy in another case", {s("/a/x COPY.doc"), s("/a/xxxxxxx.doc")}, 1);
        row("digits lose against words", {s("/a/12345.jpg"), s("/a/holiday.jpg")}, 1);
        row("half digits are not most", {s("/a/1234.jpg"), s("/a/ab12.jpg")}, 1);
        row("fewest letters", {s("/a/a.c"), s("/a/abc.c")}, 1);
        row("letters count in the name only", {s("/aaaaaaa/b.c"), s("/z/bbb.c")}, 1);
        row("first of equals", {s("/b/same.txt"), s("/a/same.txt")}, 1);
        row("alone", {s("/a/copy - 1.txt")}, 0);
        row("minus without blank is no number", {s("/a/report -2.doc"), s("/a/reportxx.doc")}, 1);
    }

    void chooser()
    {
        QFETCH(QStringList, group);
        QFETCH(int, kept);
        QCOMPARE(chooseFileToKeep(group), group.at(kept));
    }

    void grouping_data()
    {
        addColumns<QVector<QByteArray>, QStringList, QStringList>("contents", "added", "lines");
        const auto pair = forgedPair();
        const auto list = [](const char *text) {
            return QString::fromLatin1(text).split(QLatin1Char(';'), Qt::SkipEmptyParts);
        };
        addRow("nothing", QVector<QByteArray>(), QStringList(), QStringList());
        addRow("all different", QVector<QByteArray>({"1", "2", "3"}), list("a0;a1;a2"), QStringList());
        addRow("three equal", QVector<QByteArray>({"1", "1", "1"}), list("a1"), list("group a1:a0,a2"));
        addRow("order of the paths", QVector<QByteArray>({"9", "1", "9", "1", "5"}), list("a2;a3;a4"),
               list("group a2:a0;group a3:a1"));
        addRow("equal checksum and size, other bytes", QVector<QByteArray>({pair.first, pair.second}),
               list("a0;a1"), QStringList());
        addRow("two pairs of one checksum",
               QVector<QByteArray>({pair.first, pair.second, pair.second, pair.first}), list("a2;a3"),
               list("group a3:a0;group a2:a1"));
        addRow("equal checksum, other size", QVector<QByteArray>({"1", QByteArray("\0001", 2)}),
               list("a0;a1"), QStringList());
        addRow("empty files are equal", QVector<QByteArray>({"", ""}), list("a1"), list("group a1:a0"));
        // Too much to be held in memory: read side by side.
        const QByteArray large(3 * 1024 * 1024, 'x');
        addRow("large ones",
               QVector<QByteArray>({large + pair.first, large + pair.second, large + pair.first}),
               list("a1;a2"), list("group a2:a0"));
    }

    void grouping()
    {
        QFETCH(QVector<QByteArray>, contents);
        AddingFixture fixture;
        QStringList paths;
        for (int i = 0; i < contents.size(); ++i)
            paths.append(fixture.write("a%1"_s.arg(i), contents.at(i)));
        const Run run = runOn(fixture, paths);
        QVERIFY(run.answer);
        QStringList names;
        for (const QString &path : run.out)
            names.append(path.mid(path.lastIndexOf(QLatin1Char('/')) + 1));
        QTEST(names, "added");
        QTEST(linesOf(run.found), "lines");
        QCOMPARE(run.kept.size(), run.found.externalDuplicateGroups.size());
    }

    void databaseMatches_data()
    {
        addColumns<bool, QByteArray, QByteArray, bool>("isLinking", "stored", "dropped", "matches");
        const auto pair = forgedPair();
        const QByteArray large = QByteArray(10000000, 'x') + "tail of a second block";
        QByteArray otherTail = large;
        otherTail.replace(large.size() - 8, 8, pair.second);
        QByteArray tail = large;
        tail.replace(large.size() - 8, 8, pair.first);
        for (const bool isLinking : {true, false}) {
            const char *kind = isLinking ? "external" : "internal";
            const auto row = [&](const char *name, const QByteArray &stored, const QByteArray &dropped,
                                 bool matches) {
                QTest::addRow("%s, %s", kind, name) << isLinking << stored << dropped << matches;
            };
            row("equal", "same", "same", true);
            row("both empty", "", "", true);
            row("forged checksum", pair.first, pair.second, false);
            row("other size of one checksum", "1", QByteArray("\0001", 2), false);
            row("two blocks, equal", tail, tail, true);
            row("two blocks, forged in the second", tail, otherTail, false);
        }
    }

    void databaseMatches()
    {
        QFETCH(bool, isLinking);
        QFETCH(QByteArray, stored);
        QFETCH(QByteArray, dropped);
        QFETCH(bool, matches);
        AddingFixture fixture;
        AddingSettings::setLinkToFiles(isLinking);
        fixture.add({fixture.write("old"_s, stored)});
        QCOMPARE(fixture.count("files"_s), 1);
        const QString one = fixture.write("new1"_s, dropped);
        const QString two = fixture.write("new2"_s, dropped);
        const Run run = runOn(fixture, {one, two});
        QCOMPARE(linesOf(run.found), QStringList(matches ? "content old:new1,new2"_s : "group new2:new1"_s));
        QCOMPARE(run.out, matches ? QStringList() : QStringList(two));
    }

    void unreadableSideIsSettledByChecksum()
    {
        AddingFixture fixture;
        const auto pair = forgedPair();
        const QString old = fixture.write("old"_s, pair.first);
        fixture.add({old});
        QVERIFY(QFile::remove(old));
        const QString dropped = fixture.write("new"_s, pair.second);
        QCOMPARE(linesOf(runOn(fixture, {dropped}).found), QStringList("content old:new"_s));
    }

    void names_data()
    {
        addColumns<bool, QStringList, int>("checkNames", "lines", "added");
        addRow("on", true, QStringList({"name :a,a"_s, "name o'ld:o'ld"_s}), 1);
        addRow("off", false, QStringList(), 4);
    }

    void names()
    {
        QFETCH(bool, checkNames);
        AddingFixture fixture;
        fixture.add({fixture.write("db/o'ld"_s, "0")});
        const Run run = runOn(fixture,
                              {fixture.write("x/a"_s, "1"), fixture.write("x/b"_s, "2"),
                               fixture.write("x/o'ld"_s, "3"), fixture.write("y/a"_s, "4")},
                              checkNames);
        QTEST(linesOf(run.found), "lines");
        QTEST(run.out.size(), "added");
    }

    void failedQueryAnswersFalse()
    {
        AddingFixture fixture;
        const QString path = fixture.write("a"_s, "1");
        QVERIFY(fixture.run("ALTER TABLE files RENAME COLUMN data_checksum TO gone"_s));
        QVERIFY(!runOn(fixture, {path}).answer);
        QSignalSpy errors(&fixture.provider(), &FileOperationProvider::error);
        QSignalSpy reports(&fixture.provider(), &FileOperationProvider::duplicatesReady);
        fixture.add({path});
        QCOMPARE(errors.value(0).value(1).toString(), "Error adding files"_s);
        QCOMPARE(reports.size(), 0);
        QCOMPARE(fixture.count("files"_s), 0);
    }

    void copiesKeepAllTags()
    {
        AddingFixture fixture;
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
    Run runOn(AddingFixture &fixture, const QStringList &paths, bool checkNames = false)
    {
        OpenWorker worker(fixture, &m_constructor);
        DuplicateManager manager;
        Run run;
        run.answer =
            manager.addFilesToDB(paths, checkNames, worker, run.out, run.kept, FolderTags(), run.inherited);
        run.found = manager.presentableDuplicates();
        if (manager.checksums().size() != run.out.size() && run.answer)
            qFatal("checksums do not stand beside the paths");
        return run;
    }
    SqliteQueryConstructor m_constructor;
};

QTEST_GUILESS_MAIN(TestDuplicates)
#include "tst_duplicates.moc"
