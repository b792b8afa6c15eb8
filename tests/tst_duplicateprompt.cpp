#include "tests/support/localcollection.h"
#include "ui/dialogs/duplicateprompt.h"

#include <QAbstractItemModelTester>
#include <QClipboard>
#include <QDialogButtonBox>
#include <QLabel>
#include <QTableView>

namespace {

DuplicateFileInfo info(const char *path, qint64 fileId = 0)
{
    return {fileId, {}, QString::fromUtf8(path), 42, QDateTime::fromSecsSinceEpoch(1600000000)};
}

/** The lines of a list, as the clipboard gets them. */
QString copied(QDialog &prompt)
{
    prompt.show();
    auto *list = prompt.findChild<QTableView *>("contentMatchesList"_s);
    list->selectAll();
    QTest::keySequence(list, QKeySequence::Copy);
    return QGuiApplication::clipboard()->text();
}

int buttonCount(const QDialog &prompt)
{
    return prompt.findChild<QDialogButtonBox *>()->buttons().size();
}

/** So many names that occur twice, with the addresses of their files. */
PresentableDuplicates manyMatches(int count)
{
    PresentableDuplicates duplicates;
    DuplicateMatch match;
    match.addedFiles = {info("/in/file.txt")};
    match.databaseFiles = {info("/old/file.txt")};
    duplicates.nameMatches.fill(match, count);
    duplicates.contentMatches.fill(match, count);
    return duplicates;
}

} // namespace

/** What the prompt says of files that were left out, and which it hands back. */
class TestDuplicatePrompt : public QObject
{
    Q_OBJECT

private slots:
    void reportsWhatWasLeftOut()
    {
        LocalCollection fixture;
        const QVector<qint64> tagIds = fixture.addTags({"Red"_s, "Blue"_s});
        const qint64 fileId = fixture.addExternal("known.txt"_s, tagIds);
        const qint64 linkId = fixture.add(QUrl("https://example.org/x"_s), tagIds.mid(0, 1));
        PresentableDuplicates duplicates;
        DuplicateMatch match;
        match.addedFiles = {info("/in/100%1.txt"), info("/in/copy %2.txt")};
        match.databaseFiles = {info("/old/a.txt", fileId), info("/old/b.txt", 99)};
        duplicates.contentMatches << match;
        match.addedFiles = {info("/in/link")};
        match.databaseFiles = {info("known", linkId)};
        duplicates.contentMatches << match;
        ExternalDuplicateGroup group;
        group.keptFile = info("/in/kept.txt");
        group.ignoredFiles = {info("/in/one.txt"), info("/in/two.txt")};
        for (const auto outcome : {group.Added, group.SharesName, group.LeftOut}) {
            group.outcome = outcome;
            duplicates.externalDuplicateGroups << group;
            group.ignoredFiles.clear();
        }
        duplicates.matchedTagIds = tagIds;
        DuplicatePrompt prompt(duplicates, &fixture.mainView());
        QCOMPARE(prompt.findChild<QLabel *>("headLabel"_s)->text(),
                 "3 files are there already. They got the tags Red, Blue."_s);
        QCOMPARE(buttonCount(prompt), 1);
        QCOMPARE(prompt.findChild<QLabel *>("nameMatchesLabel"_s)->text(), "No name duplicates."_s);
        // "@" is the date, "=" the line below a file that equals another.
        QString text = copied(prompt);
        text.replace(QLocale().toString(info("").lastModified, QLocale::ShortFormat), "@"_s);
        text.replace("  Size: 42  Last Modified: @\n"_s, " @\n"_s);
        text.replace("    Content matched other external file\n"_s, "=\n"_s);
        QCOMPARE(text, "The following 5 files and hyperlinks will not be added to the database:\n\n"
                       "/in/100%1.txt @\n/in/copy %2.txt @\n=\n"
                       "    Content matched the following files in the database:\n"
                       "Database file: /old/a.txt   Size: 42 Last Modified: @\n           Tags: Red, Blue\n"
                       "Database file: /old/b.txt   Size: 42 Last Modified: @\n           Tags: \n\n"
                       "/in/link @\n    Content matched the following hyperlink in the database:\n"
                       "Database file: known   Size: 42 Last Modified: @\n           Tags: Red\n\n"
                       "External content duplicate group.\n/in/one.txt @\n=\n/in/two.txt @\n=\n"
                       "Content matched /in/kept.txt, which was added to the database.\n\n"
                       "External content duplicate group.\n"
                       "Content matched /in/kept.txt, which is one of the name matches.\n\n"
                       "External content duplicate group.\n"
                       "Content matched /in/kept.txt, which could not be added to the database.\n"_s);
        QVERIFY(prompt.chosenPaths().isEmpty());
    }

    void asksAboutNames()
    {
        // A sign that texts with places to fill would trip over.
        const QStringList paths{"/in/%1 \"q\".txt"_s, "/b"_s};
        PresentableDuplicates duplicates;
        DuplicateMatch match;
        match.addedFiles = {info(qPrintable(paths.at(0))), info(qPrintable(paths.at(1)))};
        duplicates.nameMatches << match;
        match.addedFiles = {info("/in/alone")};
        match.databaseFiles = {info("/old/alone")};
        duplicates.nameMatches << match;
        const QString address = "http://a/b"_s;
        match.addedFiles = {{0, {}, address, 0, {}}};
        match.databaseFiles.clear();
        duplicates.nameMatches << match;
        DuplicatePrompt prompt(duplicates, nullptr);
        QCOMPARE(prompt.chosenPaths(), paths + QStringList({"/in/alone"_s, address}));
        QCOMPARE(buttonCount(prompt), 2);
        QCOMPARE(copied(prompt).trimmed(), "No content duplicates."_s);
        auto *table = prompt.findChild<QTableView *>("nameMatchesTable"_s);
        const QAbstractItemModel *model = table->model();
        QStringList shown; // "+": with a box that is set
        for (int row = 0; row < model->rowCount(); ++row) {
            const QModelIndex file = model->index(row, 0);
            shown << (file.data(Qt::CheckStateRole) == Qt::Checked ? "+"_s : QString()) +
                         file.data().toString();
        }
        QCOMPARE(shown,
                 QStringList({"%1 \"q\".txt"_s, "+"_s + paths.at(0), "+"_s + paths.at(1), "alone"_s,
                              "+/in/alone"_s, "Database file: /old/alone"_s, address, "+"_s + address}));

        prompt.show();
        prompt.deselectAll();
        table->setCurrentIndex(model->index(2, 1));
        QTest::keyClick(table, Qt::Key_Space);
        table->setCurrentIndex(model->index(5, 0));
        QTest::keyClick(table, Qt::Key_Space);
        QCOMPARE(prompt.chosenPaths(), paths.mid(1));
        QTest::keyClick(table, Qt::Key_A);
        QCOMPARE(table->currentIndex().row(), 3);
        // A box is where it is painted: below the name and a little to the right.
        const QRect cell = table->visualRect(model->index(4, 0));
        QTest::mouseClick(table->viewport(), Qt::LeftButton, {}, {cell.left() + 28, cell.center().y()});
        QCOMPARE(prompt.chosenPaths(), paths.mid(1) + QStringList("/in/alone"_s));
    }

    void staysUntilTheFilesAreIn()
    {
        LocalCollection fixture;
        fixture.run("CREATE TRIGGER no BEFORE INSERT ON files BEGIN SELECT raise(ABORT,'no'); END"_s);
        fixture.reopenReadOnly();
        PresentableDuplicates duplicates;
        DuplicateMatch match;
        for (const char *name : {"a", "b", "c"}) {
            const QString path = fixture.write(QLatin1String(name), name);
            match.addedFiles = {info(qPrintable(path))};
            duplicates.nameMatches << match;
        }
        {
            DuplicatePrompt prompt(duplicates, &fixture.mainView());
            prompt.show();
            prompt.accept();
            QVERIFY(prompt.isVisible() && prompt.findChild<QTableView *>("nameMatchesTable"_s)->isEnabled());
            QCOMPARE(fixture.takeBoxes().size(), 1);
        }
        fixture.run("DELETE FROM file_tag"_s);
        fixture.reopen();
        DuplicatePrompt prompt(duplicates, &fixture.mainView());
        prompt.show();
        auto *table = prompt.findChild<QTableView *>("nameMatchesTable"_s);
        QTest::keyClick(table, Qt::Key_Space);
        const QStringList chosen = prompt.chosenPaths();
        QCOMPARE(chosen.size(), 2);
        QSignalSpy settled(&fixture.mainView(), &MainViewController::additionSettled);
        QTest::keyClick(table, Qt::Key_Return);
        QVERIFY(!table->isEnabled());
        QTRY_COMPARE(settled.size(), 1);
        QVERIFY(prompt.isVisible() && table->isEnabled());
        QCOMPARE(prompt.chosenPaths(), chosen);
        fixture.run("DROP TRIGGER no"_s);
        prompt.accept();
        QTRY_VERIFY(!prompt.isVisible());
        QCOMPARE(prompt.result(), int(QDialog::Accepted));
        fixture.waitForWorker();
        QCOMPARE(fixture.rows("SELECT file_name FROM files ORDER BY 1"_s), QStringList({"b"_s, "c"_s}));
    }

    void modelsAreSound()
    {
        const DuplicatePrompt prompt(manyMatches(3), nullptr);
        for (const QTableView *view : prompt.findChildren<QTableView *>())
            QAbstractItemModelTester(view->model(), QAbstractItemModelTester::FailureReportingMode::QtTest);
    }

    /** Neither their number nor the length of a line holds up the window; a quadratic step would take days.
     */
    void millionsAreShownAtOnce()
    {
        LocalCollection boxes;
        PresentableDuplicates duplicates = manyMatches(1000000);
        const QString longest = "http://"_s + QString(200000, QLatin1Char('x'));
        duplicates.nameMatches.first().addedFiles.first().path = longest;
        duplicates.contentMatches.first().addedFiles.first().path = longest;
        QElapsedTimer sinceStart;
        sinceStart.start();
        DuplicatePrompt prompt(duplicates, nullptr);
        prompt.show();
        QVERIFY(QTest::qWaitForWindowExposed(&prompt));
        for (QTableView *view : prompt.findChildren<QTableView *>()) {
            view->grab();
            view->scrollToBottom();
            QTest::keyClick(view, Qt::Key_Z);
        }
        prompt.deselectAll();
        QVERIFY(prompt.chosenPaths().isEmpty());
        prompt.selectAll();
        QCOMPARE(prompt.chosenPaths().size(), 1000000);
        QCOMPARE(copied(prompt).count(QLatin1Char('\n')), 99999);
        QCOMPARE(boxes.takeBoxes(),
                 QStringList("Copy: Only the first 100,000 of the 5,000,002 selected lines were copied."_s));
        QVERIFY2(sinceStart.elapsed() < 30000, qPrintable(QString::number(sinceStart.elapsed())));
    }
};

QTEST_MAIN(TestDuplicatePrompt)
#include "tst_duplicateprompt.moc"
