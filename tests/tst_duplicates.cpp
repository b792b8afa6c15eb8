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
        lines.append(QStringLiteral("content ") + names(match.databaseFiles) + QLatin1Char(':') +
                     names(match.addedFiles));
    for (const DuplicateMatch &match : found.nameMatches)
        lines.append(QStringLiteral("name ") + names(match.databaseFiles) + QLatin1Char(':') +
                     names(match.addedFiles));
    for (const ExternalDuplicateGroup &group : found.externalDuplicateGroups)
        lines.append(QStringLiteral("group ") + names({group.keptFile}) + QLatin1Char(':') +
                     names(group.ignoredFiles));
    return lines;
}

} // namespace

/** A worker that runs on the thread of the test, with its connection open. */
class OpenWorker : public SqliteFileOperationWorker
{
public:
    OpenWorker(const AddingFixture &fixture, const AbstractQueryConstructor *constructor)
        : SqliteFileOperationWorker(Constants::workerConnection, DBDetails::local(fixture.databasePath()),
                                    constructor)
    {
        QSqlDatabase database =
            QSqlDatabase::addDatabase(Constants::sqliteDriver, Constants::workerConnection);
        database.setDatabaseName(fixture.databasePath());
        database.open();
    }
    ~OpenWorker() override
    {
        clearPrepared();
        QSqlDatabase::database(Constants::workerConnection).close();
        QSqlDatabase::removeDatabase(Constants::workerConnection);
    }
    OpenWorker(const OpenWorker &) = delete;
    OpenWorker &operator=(const OpenWorker &) = delete;
};

class TestDuplicates : public QObject
{
    Q_OBJECT

private slots:
    void chooser_data();
    void chooser();
    void forgedChecksumsDiffer();
    void grouping_data();
    void grouping();
    void inheritedTags();
    void databaseMatches_data();
    void databaseMatches();
    void unreadableSideIsSettledByChecksum();
    void names_data();
    void names();
    void splitComparesBytes_data();
    void splitComparesBytes();
    void progressRises();
    void stopAnswersTrueAndNothing();
    void failedQueryAnswersFalse();

private:
    struct Run
    {
        bool answer = false;
        QStringList out;
        QStringList kept;
        QHash<QString, QStringList> inherited;
        PresentableDuplicates found;
    };
    Run runOn(AddingFixture &fixture, const QStringList &paths, bool checkNames = false,
              const FolderTags &tags = FolderTags(), bool isStopped = false);
    QVector<int> m_percents;
    SqliteQueryConstructor m_constructor;
};

TestDuplicates::Run TestDuplicates::runOn(AddingFixture &fixture, const QStringList &paths, bool checkNames,
                                          const FolderTags &tags, bool isStopped)
{
    OpenWorker worker(fixture, &m_constructor);
    if (isStopped)
        worker.stop();
    DuplicateManager manager;
    m_percents.clear();
    connect(&manager, &DuplicateManager::operationProgress, this,
            [this](FileOperationType, const QString &, int percent) { m_percents.append(percent); });
    Run run;
    run.answer = manager.addFilesToDB(paths, checkNames, worker, run.out, run.kept, tags, run.inherited);
    run.found = manager.presentableDuplicates();
    if (manager.checksums().size() != run.out.size() && !isStopped && run.answer)
        qFatal("checksums do not stand beside the paths");
    return run;
}

void TestDuplicates::chooser_data()
{
    QTest::addColumn<QStringList>("group");
    QTest::addColumn<int>("kept");
    const auto row = [](const char *name, const QStringList &group, int kept) {
        QTest::newRow(name) << group << kept;
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

void TestDuplicates::chooser()
{
    QFETCH(QStringList, group);
    QFETCH(int, kept);
    QCOMPARE(chooseFileToKeep(group), group.at(kept));
}

void TestDuplicates::forgedChecksumsDiffer()
{
    const auto pair = forgedPair();
    QVERIFY(pair.first != pair.second);
    QCOMPARE(DataChecksum::ofBytes(pair.first), DataChecksum::ofBytes(pair.second));
    QCOMPARE(DataChecksum::ofHyperlink(QString::fromUtf8("h\xE2\x82\xAC")),
             DataChecksum::ofHyperlink(QString::fromUtf8("h\xE2\x82\xAD")));
}

void TestDuplicates::grouping_data()
{
    QTest::addColumn<QVector<QByteArray>>("contents");
    QTest::addColumn<QStringList>("added");
    QTest::addColumn<QStringList>("lines");
    const auto pair = forgedPair();
    const auto list = [](const char *text) {
        return QString::fromLatin1(text).split(QLatin1Char(';'), Qt::SkipEmptyParts);
    };
    QTest::newRow("nothing") << QVector<QByteArray>() << QStringList() << QStringList();
    QTest::newRow("all different") << QVector<QByteArray>({"1", "2", "3"}) << list("a0;a1;a2")
                                   << QStringList();
    QTest::newRow("three equal") << QVector<QByteArray>({"1", "1", "1"}) << list("a1")
                                 << list("group a1:a0,a2");
    QTest::newRow("order of the paths") << QVector<QByteArray>({"9", "1", "9", "1", "5"}) << list("a2;a3;a4")
                                        << list("group a2:a0;group a3:a1");
    QTest::newRow("equal checksum and size, other bytes")
        << QVector<QByteArray>({pair.first, pair.second}) << list("a0;a1") << QStringList();
    QTest::newRow("two pairs of one checksum")
        << QVector<QByteArray>({pair.first, pair.second, pair.second, pair.first}) << list("a2;a3")
        << list("group a3:a0;group a2:a1");
    QTest::newRow("equal checksum, other size")
        << QVector<QByteArray>({"1", QByteArray("\0001", 2)}) << list("a0;a1") << QStringList();
    QTest::newRow("empty files are equal")
        << QVector<QByteArray>({"", ""}) << list("a1") << list("group a1:a0");
}

void TestDuplicates::grouping()
{
    QFETCH(QVector<QByteArray>, contents);
    QFETCH(QStringList, added);
    QFETCH(QStringList, lines);
    AddingFixture fixture;
    QStringList paths;
    for (int i = 0; i < contents.size(); ++i)
        paths.append(fixture.write(QStringLiteral("a%1").arg(i), contents.at(i)));
    const Run run = runOn(fixture, paths);
    QVERIFY(run.answer);
    QStringList names;
    for (const QString &path : run.out)
        names.append(path.mid(path.lastIndexOf(QLatin1Char('/')) + 1));
    QCOMPARE(names, added);
    QCOMPARE(linesOf(run.found), lines);
    QCOMPARE(run.kept.size(), run.found.externalDuplicateGroups.size());
}

void TestDuplicates::inheritedTags()
{
    AddingFixture fixture;
    const QString kept = fixture.write(QStringLiteral("one/deep/name.txt"), "1");
    const QString copy = fixture.write(QStringLiteral("two/copy of name.txt"), "1");
    const QString alone = fixture.write(QStringLiteral("two/alone.txt"), "2");
    FolderTags tags;
    tags.add(fixture.path(QStringLiteral("one")), {QStringLiteral("all"), QStringLiteral("first")});
    tags.add(fixture.path(QStringLiteral("two")), {QStringLiteral("all"), QStringLiteral("second")});
    const Run run = runOn(fixture, {copy, kept, alone}, false, tags);
    QCOMPARE(run.inherited.size(), 1);
    QStringList names = run.inherited.value(kept);
    names.sort();
    QCOMPARE(names, QStringList({QStringLiteral("all"), QStringLiteral("first"), QStringLiteral("second")}));
    QCOMPARE(run.found.externalDuplicateGroups.first().ignoredFiles.first().tagNames,
             QStringList({QStringLiteral("all"), QStringLiteral("second")}));
}

void TestDuplicates::databaseMatches_data()
{
    QTest::addColumn<bool>("isLinking");
    QTest::addColumn<QByteArray>("stored");
    QTest::addColumn<QByteArray>("dropped");
    QTest::addColumn<bool>("matches");
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

void TestDuplicates::databaseMatches()
{
    QFETCH(bool, isLinking);
    QFETCH(QByteArray, stored);
    QFETCH(QByteArray, dropped);
    QFETCH(bool, matches);
    AddingFixture fixture;
    AddingSettings::setLinkToFiles(isLinking);
    fixture.add({fixture.write(QStringLiteral("old"), stored)});
    QCOMPARE(fixture.count(QStringLiteral("files")), 1);
    const QString one = fixture.write(QStringLiteral("new1"), dropped);
    const QString two = fixture.write(QStringLiteral("new2"), dropped);
    const Run run = runOn(fixture, {one, two});
    QCOMPARE(linesOf(run.found), QStringList(matches ? QStringLiteral("content old:new1,new2")
                                                     : QStringLiteral("group new2:new1")));
    QCOMPARE(run.out, matches ? QStringList() : QStringList(two));
}

void TestDuplicates::unreadableSideIsSettledByChecksum()
{
    AddingFixture fixture;
    const auto pair = forgedPair();
    const QString old = fixture.write(QStringLiteral("old"), pair.first);
    fixture.add({old});
    QVERIFY(QFile::remove(old));
    const QString dropped = fixture.write(QStringLiteral("new"), pair.second);
    QCOMPARE(linesOf(runOn(fixture, {dropped}).found), QStringList(QStringLiteral("content old:new")));
}

void TestDuplicates::names_data()
{
    QTest::addColumn<bool>("checkNames");
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<int>("added");
    QTest::newRow("on") << true
                        << QStringList({QStringLiteral("name :a,a"), QStringLiteral("name o'ld:o'ld")}) << 1;
    QTest::newRow("off") << false << QStringList() << 4;
}

void TestDuplicates::names()
{
    QFETCH(bool, checkNames);
    QFETCH(QStringList, lines);
    QFETCH(int, added);
    AddingFixture fixture;
    fixture.add({fixture.write(QStringLiteral("db/o'ld"), "0")});
    const Run run =
        runOn(fixture,
              {fixture.write(QStringLiteral("x/a"), "1"), fixture.write(QStringLiteral("x/b"), "2"),
               fixture.write(QStringLiteral("x/o'ld"), "3"), fixture.write(QStringLiteral("y/a"), "4")},
              checkNames);
    QCOMPARE(linesOf(run.found), lines);
    QCOMPARE(run.out.size(), added);
}

void TestDuplicates::splitComparesBytes_data()
{
    QTest::addColumn<int>("size");
    QTest::newRow("held in memory") << 1000;
    QTest::newRow("read side by side") << 3 * 1024 * 1024;
}

void TestDuplicates::splitComparesBytes()
{
    QFETCH(int, size);
    AddingFixture fixture;
    OpenWorker worker(fixture, &m_constructor);
    QStringList paths;
    const QByteArray kinds("abacbaca");
    for (int i = 0; i < kinds.size(); ++i) {
        QByteArray bytes(size, 'x');
        bytes[size - 1] = kinds.at(i);
        paths.append(fixture.write(QString::number(i), bytes));
    }
    const QVector<QVector<int>> expected = {{0, 2, 5, 7}, {1, 4}, {3, 6}};
    QCOMPARE(FileComparison(worker).split(paths, size), expected);
}

void TestDuplicates::progressRises()
{
    AddingFixture fixture;
    QStringList paths;
    for (int i = 0; i < 500; ++i)
        paths.append(fixture.write(QString::number(i), QByteArray::number(i / 2)));
    runOn(fixture, paths);
    QVERIFY(std::is_sorted(m_percents.cbegin(), m_percents.cend()));
    QCOMPARE(m_percents.first(), 0);
    QCOMPARE(m_percents.last(), 100);
}

void TestDuplicates::stopAnswersTrueAndNothing()
{
    AddingFixture fixture;
    const Run run = runOn(fixture, {fixture.write(QStringLiteral("a"), "1")}, true, FolderTags(), true);
    QVERIFY(run.answer);
    QVERIFY(run.out.isEmpty());
    QVERIFY(linesOf(run.found).isEmpty());
}

void TestDuplicates::failedQueryAnswersFalse()
{
    AddingFixture fixture;
    const QString path = fixture.write(QStringLiteral("a"), "1");
    QVERIFY(fixture.run(QStringLiteral("ALTER TABLE files RENAME COLUMN data_checksum TO gone")));
    QVERIFY(!runOn(fixture, {path}).answer);
    QSignalSpy errors(&fixture.provider(), &FileOperationProvider::error);
    QSignalSpy reports(&fixture.provider(), &FileOperationProvider::duplicatesReady);
    fixture.add({path});
    QCOMPARE(errors.value(0).value(1).toString(), QStringLiteral("Error adding files"));
    QCOMPARE(reports.size(), 0);
    QCOMPARE(fixture.count(QStringLiteral("files")), 0);
}

QTEST_GUILESS_MAIN(TestDuplicates)
#include "tst_duplicates.moc"
