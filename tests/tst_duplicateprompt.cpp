#include "tests/support/localcollection.h"
#include "ui/dialogs/duplicateprompt.h"

#include <QPlainTextEdit>
#include <QTreeWidget>

namespace {

DuplicateFileInfo info(const char *path, qint64 fileId = 0)
{
    return {fileId, {}, QString::fromUtf8(path), 42, QDateTime::fromSecsSinceEpoch(1600000000)};
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
        duplicates.externalDuplicateGroups << group;
        const DuplicatePrompt prompt(duplicates, &fixture.mainView());
        // "@" is the date, "=" the line below a file that equals another.
        QString text = prompt.findChild<QPlainTextEdit *>("contentMatchesEdit"_s)->toPlainText();
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
                       "Content matched /in/kept.txt, which was added to the database.\n\n"_s);
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
        const DuplicatePrompt prompt(duplicates, nullptr);
        QCOMPARE(prompt.chosenPaths(), paths);
        const QTreeWidgetItem *name = prompt.findChild<QTreeWidget *>("nameMatchesTree"_s)->topLevelItem(0);
        QCOMPARE(name->text(0), "%1 \"q\".txt"_s);
        name->child(0)->setCheckState(0, Qt::Unchecked);
        QCOMPARE(prompt.chosenPaths(), paths.mid(1));
    }
};

QTEST_MAIN(TestDuplicatePrompt)
#include "tst_duplicateprompt.moc"
