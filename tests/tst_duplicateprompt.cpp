#include "tests/support/filesfixture.h"
#include "ui/dialogs/duplicateprompt.h"

#include <QAbstractButton>
#include <QLabel>
#include <QPlainTextEdit>
#include <QTabWidget>
#include <QTreeWidget>

namespace {

DuplicateFileInfo info(const char *path, qint64 fileId = 0, qint64 size = 42)
{
    DuplicateFileInfo info;
    info.fileId = fileId;
    info.path = QString::fromUtf8(path);
    info.size = size;
    info.lastModified = QDateTime::fromSecsSinceEpoch(1600000000);
    return info;
}

PresentableDuplicates nameMatches(const QStringList &paths)
{
    PresentableDuplicates duplicates;
    for (const QString &path : paths) {
        DuplicateMatch match;
        match.databaseFiles = {info("/database/same.txt", 7)};
        match.addedFiles = {info(qPrintable(path))};
        duplicates.nameMatches << match;
    }
    return duplicates;
}

} // namespace

/** What the prompt says of files that were left out, and which it hands back. */
class TestDuplicatePrompt : public QObject
{
    Q_OBJECT

private slots:
    void reportsContentMatches();
    void reportsCopiesInBatch();
    void tagsOfKnownFilesAreTold_data();
    void tagsOfKnownFilesAreTold();
    void asksAboutNames_data();
    void asksAboutNames();
    void withoutNameMatchesNothingIsChosen();
    void checkBoxesChoosePaths();
    void selectAndDeselectAll();

private:
    static QString report(const DuplicatePrompt &prompt)
    {
        return prompt.findChild<QPlainTextEdit *>(QStringLiteral("contentMatchesEdit"))->toPlainText();
    }
    static QString nameHeading(const DuplicatePrompt &prompt)
    {
        return prompt.findChild<QLabel *>(QStringLiteral("nameMatchesLabel"))->text();
    }
    static void click(DuplicatePrompt &prompt, const char *button)
    {
        prompt.findChild<QAbstractButton *>(QLatin1String(button))->click();
    }
};

void TestDuplicatePrompt::reportsContentMatches()
{
    PresentableDuplicates duplicates;
    DuplicateMatch match;
    match.addedFiles = {info("/in/100%1.txt"), info("/in/copy %2.txt")};
    match.databaseFiles = {info("/old/a.txt", 1), info("/old/b.txt", 2)};
    duplicates.contentMatches << match;
    const DuplicatePrompt prompt(duplicates, nullptr);

    const QString text = report(prompt);
    QCOMPARE(prompt.windowTitle(), QStringLiteral("Duplicates"));
    QVERIFY(text.startsWith(
        QStringLiteral("The following 2 files and hyperlinks will not be added to the database:\n")));
    QVERIFY(text.contains(QStringLiteral("/in/100%1.txt  Size: 42  Last Modified: ")));
    QVERIFY(text.contains(QStringLiteral("/in/copy %2.txt  Size: 42")));
    QVERIFY(text.contains(QStringLiteral("    Content matched other external file\n")));
    QVERIFY(text.contains(QStringLiteral("    Content matched the following files in the database:\n"
                                         "Database file: /old/a.txt   Size: 42 Last Modified: ")));
    QVERIFY(text.indexOf(QStringLiteral("/old/b.txt")) > text.indexOf(QStringLiteral("/old/a.txt")));
}

void TestDuplicatePrompt::reportsCopiesInBatch()
{
    PresentableDuplicates duplicates;
    ExternalDuplicateGroup group;
    group.keptFile = info("/in/kept.txt");
    group.ignoredFiles = {info("/in/one.txt"), info("/in/two.txt"), info("/in/three.txt")};
    duplicates.externalDuplicateGroups << group;
    const DuplicatePrompt prompt(duplicates, nullptr);

    const QString text = report(prompt);
    QVERIFY(text.startsWith(QStringLiteral("The following 3 files ")));
    QVERIFY(text.contains(QStringLiteral("External content duplicate group.")));
    QCOMPARE(text.count(QStringLiteral("    Content matched other external file\n")), 3);
    QVERIFY(
        text.contains(QStringLiteral("Content matched /in/kept.txt, which was added to the database.\n")));
    QVERIFY(prompt.chosenPaths().isEmpty());
}

void TestDuplicatePrompt::tagsOfKnownFilesAreTold_data()
{
    QTest::addColumn<QUrl>("url");
    QTest::addColumn<QString>("noun");
    QTest::newRow("file") << QUrl() << QStringLiteral("file");
    QTest::newRow("hyperlink") << QUrl(QStringLiteral("https://example.org/x"))
                               << QStringLiteral("hyperlink");
}

void TestDuplicatePrompt::tagsOfKnownFilesAreTold()
{
    QFETCH(QUrl, url);
    QFETCH(QString, noun);
    FilesFixture fixture;
    const QVector<qint64> tagIds = {fixture.tags().addTag(QStringLiteral("Red")),
                                    fixture.tags().addTag(QStringLiteral("Blue"))};
    const qint64 fileId =
        url.isEmpty() ? fixture.addExternal(QStringLiteral("known.txt"), tagIds) : fixture.add(url, tagIds);
    PresentableDuplicates duplicates;
    DuplicateMatch match;
    match.addedFiles = {info("/in/new.txt")};
    match.databaseFiles = {info("known", fileId)};
    duplicates.contentMatches << match;
    const DuplicatePrompt prompt(duplicates, &fixture.mainView());

    const QString text = report(prompt);
    QVERIFY(
        text.contains(QStringLiteral("    Content matched the following %1 in the database:\n").arg(noun)));
    QVERIFY(text.contains(QStringLiteral("\n           Tags: Red, Blue\n")));
}

void TestDuplicatePrompt::asksAboutNames_data()
{
    QTest::addColumn<QStringList>("paths");
    QTest::addColumn<QString>("heading");
    const QString start = QStringLiteral("The following files have matching names. Deselect ");
    QTest::newRow("none") << QStringList() << QStringLiteral("No name duplicates.");
    QTest::newRow("one") << QStringList{QStringLiteral("/in/a")}
                         << start + QStringLiteral("the checked file if you do not want it added.");
    QTest::newRow("several") << QStringList{QStringLiteral("/in/a"), QStringLiteral("/in/b")}
                             << start + QStringLiteral("those you do not want added.");
}

void TestDuplicatePrompt::asksAboutNames()
{
    QFETCH(QStringList, paths);
    QFETCH(QString, heading);
    const DuplicatePrompt prompt(nameMatches(paths), nullptr);
    QCOMPARE(nameHeading(prompt), heading);
    QCOMPARE(prompt.chosenPaths(), paths);
}

void TestDuplicatePrompt::withoutNameMatchesNothingIsChosen()
{
    PresentableDuplicates duplicates;
    ExternalDuplicateGroup group;
    group.keptFile = info("/in/kept");
    group.ignoredFiles = {info("/in/copy")};
    duplicates.externalDuplicateGroups << group;
    DuplicatePrompt prompt(duplicates, nullptr);
    prompt.selectAll();
    QVERIFY(prompt.chosenPaths().isEmpty());
    QCOMPARE(prompt.findChild<QTabWidget *>(QStringLiteral("tabs"))->currentIndex(), 0);
}

void TestDuplicatePrompt::checkBoxesChoosePaths()
{
    // Two files of one name, one of them with a sign that texts with places to fill would trip over.
    PresentableDuplicates duplicates;
    DuplicateMatch match;
    match.addedFiles = {info("/x/%1 \"q\".txt"), info("/y/%1 \"q\".txt")};
    duplicates.nameMatches << match;
    DuplicatePrompt prompt(duplicates, nullptr);
    auto *tree = prompt.findChild<QTreeWidget *>(QStringLiteral("nameMatchesTree"));
    QCOMPARE(tree->topLevelItemCount(), 1);
    QCOMPARE(tree->topLevelItem(0)->text(0), QStringLiteral("%1 \"q\".txt"));
    QCOMPARE(tree->topLevelItem(0)->childCount(), 2);

    tree->topLevelItem(0)->child(0)->setCheckState(0, Qt::Unchecked);
    QCOMPARE(prompt.chosenPaths(), QStringList{QStringLiteral("/y/%1 \"q\".txt")});
}

void TestDuplicatePrompt::selectAndDeselectAll()
{
    const QStringList paths = {QStringLiteral("/in/a"), QStringLiteral("/in/b"), QStringLiteral("/in/c")};
    DuplicatePrompt prompt(nameMatches(paths), nullptr);
    click(prompt, "deselectAllButton");
    QVERIFY(prompt.chosenPaths().isEmpty());
    click(prompt, "selectAllButton");
    QCOMPARE(prompt.chosenPaths(), paths);
}

QTEST_MAIN(TestDuplicatePrompt)
#include "tst_duplicateprompt.moc"
