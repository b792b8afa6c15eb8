#include "tests/support/localcollection.h"
#include "ui/dialogs/duplicateprompt.h"

#include <QLabel>
#include <QPlainTextEdit>
#include <QTreeWidget>

namespace {

const QDateTime date = QDateTime::fromSecsSinceEpoch(1600000000);

DuplicateFileInfo info(const char *path, qint64 fileId = 0)
{
    DuplicateFileInfo info;
    info.fileId = fileId;
    info.path = QString::fromUtf8(path);
    info.size = 42;
    info.lastModified = date;
    return info;
}

} // namespace

/** What the prompt says of files that were left out, and which it hands back. */
class TestDuplicatePrompt : public QObject
{
    Q_OBJECT

private slots:
    void reportsWhatWasLeftOut()
    {
        PresentableDuplicates duplicates;
        DuplicateMatch match;
        match.addedFiles = {info("/in/100%1.txt"), info("/in/copy %2.txt")};
        match.databaseFiles = {info("/old/a.txt", 1), info("/old/b.txt", 2)};
        duplicates.contentMatches << match;
        ExternalDuplicateGroup group;
        group.keptFile = info("/in/kept.txt");
        group.ignoredFiles = {info("/in/one.txt"), info("/in/two.txt"), info("/in/three.txt")};
        duplicates.externalDuplicateGroups << group;
        const DuplicatePrompt prompt(duplicates, nullptr);

        const QString expected =
            "The following 5 files and hyperlinks will not be added to the database:\n\n"
            "/in/100%1.txt  Size: 42  Last Modified: @\n"
            "/in/copy %2.txt  Size: 42  Last Modified: @\n"
            "    Content matched other external file\n"
            "    Content matched the following files in the database:\n"
            "Database file: /old/a.txt   Size: 42 Last Modified: @\n           Tags: \n"
            "Database file: /old/b.txt   Size: 42 Last Modified: @\n           Tags: \n\n"
            "External content duplicate group.\n"
            "/in/one.txt  Size: 42  Last Modified: @\n"
            "    Content matched other external file\n"
            "/in/two.txt  Size: 42  Last Modified: @\n"
            "    Content matched other external file\n"
            "/in/three.txt  Size: 42  Last Modified: @\n"
            "    Content matched other external file\n"
            "Content matched /in/kept.txt, which was added to the database.\n\n"_s;
        QCOMPARE(report(prompt).replace(QLocale().toString(date, QLocale::ShortFormat), "@"_s), expected);
        QVERIFY(prompt.chosenPaths().isEmpty());
    }

    void tagsOfKnownFilesAreTold_data()
    {
        addColumns<QUrl, QString>("url", "noun");
        addRow("file", QUrl(), "file"_s);
        addRow("hyperlink", QUrl("https://example.org/x"_s), "hyperlink"_s);
    }

    void tagsOfKnownFilesAreTold()
    {
        QFETCH(QUrl, url);
        QFETCH(QString, noun);
        LocalCollection fixture;
        const QVector<qint64> tagIds = {fixture.tags().addTag("Red"_s), fixture.tags().addTag("Blue"_s)};
        const qint64 fileId =
            url.isEmpty() ? fixture.addExternal("known.txt"_s, tagIds) : fixture.add(url, tagIds);
        PresentableDuplicates duplicates;
        DuplicateMatch match;
        match.addedFiles = {info("/in/new.txt")};
        match.databaseFiles = {info("known", fileId)};
        duplicates.contentMatches << match;
        const DuplicatePrompt prompt(duplicates, &fixture.mainView());

        const QString text = report(prompt);
        QVERIFY(text.contains("    Content matched the following %1 in the database:\n"_s.arg(noun)));
        QVERIFY(text.contains("\n           Tags: Red, Blue\n"_s));
    }

    void asksAboutNames_data()
    {
        addColumns<QStringList, QString>("paths", "heading");
        const QString start = "The following files have matching names. Deselect "_s;
        // A sign that texts with places to fill would trip over.
        const QString path = "/in/%1 \"q\".txt"_s;
        addRow("none", QStringList(), "No name duplicates."_s);
        addRow("one", QStringList{path}, start + "the checked file if you do not want it added."_s);
        addRow("several", QStringList{path, "/b"_s}, start + "those you do not want added."_s);
    }

    void asksAboutNames()
    {
        QFETCH(QStringList, paths);
        PresentableDuplicates duplicates;
        DuplicateMatch match;
        for (const QString &path : paths)
            match.addedFiles << info(qPrintable(path));
        if (!paths.isEmpty())
            duplicates.nameMatches << match;
        const DuplicatePrompt prompt(duplicates, nullptr);
        QTEST(prompt.findChild<QLabel *>("nameMatchesLabel"_s)->text(), "heading");
        QCOMPARE(prompt.chosenPaths(), paths);
        if (paths.isEmpty())
            return;
        const QTreeWidgetItem *name = prompt.findChild<QTreeWidget *>("nameMatchesTree"_s)->topLevelItem(0);
        QCOMPARE(name->text(0), "%1 \"q\".txt"_s);
        name->child(0)->setCheckState(0, Qt::Unchecked);
        QCOMPARE(prompt.chosenPaths(), paths.mid(1));
    }

private:
    static QString report(const DuplicatePrompt &prompt)
    {
        return prompt.findChild<QPlainTextEdit *>("contentMatchesEdit"_s)->toPlainText();
    }
};

QTEST_MAIN(TestDuplicatePrompt)
#include "tst_duplicateprompt.moc"
