#include "app/messages/filedialogs.h"
#include "app/settings/windowsettings.h"
#include "core/controllers/exportselection.h"
#include "fileops/worker/exportrequest.h"
#include "tests/support/localcollection.h"
#include "ui/dialogs/databasecontentsselector.h"
#include "ui/dialogs/exportcommand.h"
#include "ui/dialogs/tagexportdialog.h"

#include <QAbstractButton>
#include <QDialogButtonBox>
#include <QPushButton>
#include <QtTest>

#include <unistd.h>

namespace {

const QStringList importButtons{"filesBox"_s,         "descriptionsBox"_s, "appendButton"_s,
                                "replaceButton"_s,    "tagsBox"_s,         "nodesBox"_s,
                                "relationshipsBox"_s, "fileTagsBox"_s,     "groupsBox"_s};

QAbstractButton *button(const QDialog &dialog, const QString &name)
{
    return dialog.findChild<QAbstractButton *>(name);
}

/** The buttons that are ticked and can be clicked, or all that are ticked. */
QStringList ticked(const QDialog &dialog, bool onlyEnabled)
{
    QStringList names;
    for (const QString &name : importButtons) {
        const QAbstractButton *shown = button(dialog, name);
        if (shown->isChecked() && (shown->isEnabled() || !onlyEnabled))
            names.append(name);
    }
    return names;
}

QString told(const ImportOptions &options)
{
    QString text;
    const auto add = [&text](bool isOn, char letter) {
        text += isOn ? QLatin1Char(letter) : QLatin1Char('-');
    };
    add(options.files, 'f');
    add(options.tags, 't');
    add(options.browsingNodes, 'n');
    add(options.tagRelationships, 'r');
    add(options.fileTags, 'l');
    add(options.tagGroups, 'g');
    return text + QString::number(options.descriptions);
}

/** Answers the dialog of options that is about to open. */
void answerOptions(bool isAccepted, QString *title = nullptr)
{
    QTimer::singleShot(0, qApp, [isAccepted, title] {
        auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        if (!dialog)
            return;
        if (title)
            *title = dialog->windowTitle();
        isAccepted ? dialog->accept() : dialog->reject();
    });
}

/** The file dialogs that were asked for, answered with one path. */
class PathAnswer
{
public:
    explicit PathAnswer(const QString &path)
    {
        FileDialogs::setResponder([this, path](const FileDialogs::Request &request) {
            requests.append(request);
            return path.isEmpty() ? QStringList() : QStringList(path);
        });
    }
    ~PathAnswer() { FileDialogs::setResponder({}); }

    QVector<FileDialogs::Request> requests;
};

ExportSelection allFiles(LocalCollection &open)
{
    return ExportSelection::ofFiles(open.manager()->files().keys().toVector());
}

} // namespace

/** The dialogs that ask what goes out of a database and what comes into it. */
class TestExchangeDialogs : public QObject
{
    Q_OBJECT

private slots:
    void init() { SettingsSandbox::clear(); }

    void selectorTellsAndKeepsTheChoice_data()
    {
        addColumns<bool, QStringList, QString, QString>("isShell", "clicked", "told", "toldNextTime");
        addRow("all at first", false, QStringList(), "ftnrlg1"_s, "ftnrlg1"_s);
        addRow("a shell has no files and forgets none", true, QStringList(), "-tnrlg1"_s, "ftnrlg1"_s);
        addRow("replaced descriptions", false, QStringList{"replaceButton"_s}, "ftnrlg2"_s, "ftnrlg2"_s);
        addRow("no descriptions", false, QStringList{"replaceButton"_s, "descriptionsBox"_s}, "ftnrlg0"_s,
               "ftnrlg0"_s);
        addRow("nothing hangs on tags that stay", false, QStringList{"tagsBox"_s}, "f-----1"_s, "f-----1"_s);
        addRow("each box", false,
               QStringList{"filesBox"_s, "nodesBox"_s, "relationshipsBox"_s, "fileTagsBox"_s}, "-t---g1"_s,
               "-t---g1"_s);
        addRow("groups", false, QStringList{"groupsBox"_s}, "ftnrl-1"_s, "ftnrl-1"_s);
    }

    void selectorTellsAndKeepsTheChoice()
    {
        QFETCH(bool, isShell);
        QFETCH(QStringList, clicked);
        QFETCH(QString, told);
        QFETCH(QString, toldNextTime);
        DatabaseContentsSelector dialog("/a/b.vrn"_s, isShell);
        for (const QString &name : clicked)
            button(dialog, name)->click();
        QCOMPARE(::told(dialog.options()), told);
        dialog.accept();
        DatabaseContentsSelector next("/a/b.vrn"_s, false);
        QCOMPARE(::told(next.options()), toldNextTime);
    }

    void selectorForgetsWhatWasRejected()
    {
        DatabaseContentsSelector dialog("/a/b.vrn"_s, false);
        button(dialog, "filesBox"_s)->click();
        dialog.reject();
        QCOMPARE(told(DatabaseContentsSelector("/a/b.vrn"_s, false).options()), "ftnrlg1"_s);
    }

    void selectorBringsBackTheBoxesOfTags()
    {
        DatabaseContentsSelector dialog("/a/b.vrn"_s, false);
        button(dialog, "tagsBox"_s)->click();
        QCOMPARE(ticked(dialog, true), (QStringList{"filesBox"_s, "descriptionsBox"_s, "appendButton"_s}));
        QVERIFY(ticked(dialog, false).contains("groupsBox"_s));
        button(dialog, "filesBox"_s)->click();
        button(dialog, "descriptionsBox"_s)->click();
        QVERIFY(!dialog.findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok)->isEnabled());
    }

    void exportOptionsAreTheRequest_data()
    {
        addColumns<QString, QString>("clicked", "told");
        addRow("all at first", QString(), "0drg"_s);
        addRow("no descriptions", "descriptionsBox"_s, "0-rg"_s);
        addRow("no relationships", "relationshipsBox"_s, "0d-g"_s);
        addRow("no groups", "groupsBox"_s, "0dr-"_s);
        addRow("shell", "form1Button"_s, "1drg"_s);
        addRow("table", "form2Button"_s, "2drg"_s);
    }

    void exportOptionsAreTheRequest()
    {
        QFETCH(QString, clicked);
        TagExportDialog dialog;
        if (!clicked.isEmpty())
            button(dialog, clicked)->click();
        QCOMPARE(button(dialog, "groupsBox"_s)->isEnabled(), clicked != "form2Button"_s);
        ExportRequest request;
        dialog.fill(request);
        const QString told = "%1%2%3%4"_s.arg(request.form)
                                 .arg(request.exportDescriptions ? 'd' : '-')
                                 .arg(request.exportTagRelationships ? 'r' : '-')
                                 .arg(request.exportTagGroups ? 'g' : '-');
        QTEST(told, "told");
    }

    void exportAsksForItsTarget_data()
    {
        addColumns<int, QString, QString>("form", "typed", "written");
        addRow("database", 0, "out.vrn"_s, "out.vrn"_s);
        addRow("database in capitals", 0, "OUT.VRN"_s, "OUT.VRN"_s);
        addRow("shell without its ending", 1, "out"_s, "out.vsh"_s);
        addRow("table with another ending", 2, "it's 100%1.txt"_s, "it's 100%1.txt.csv"_s);
    }

    void exportAsksForItsTarget()
    {
        QFETCH(int, form);
        QFETCH(QString, typed);
        QFETCH(QString, written);
        LocalCollection open;
        open.addFiles(3);
        PathAnswer answer(open.filePath(typed));
        QString title;
        answerOptions(true, &title);
        ExportCommand(&open.mainView(), nullptr).exportSelection(form, allFiles(open));
        open.waitForWorker();
        QCOMPARE(title, form == ExportRequest::Csv ? QString() : "Export Options"_s);
        QCOMPARE(answer.requests.size(), 1);
        QCOMPARE(answer.requests.first().kind, FileDialogs::Request::SaveFile);
        QCOMPARE(answer.requests.first().caption, "Export Target"_s);
        QCOMPARE(answer.requests.first().filter, QStringList({"*.vrn"_s, "*.vsh"_s, "*.csv"_s}).at(form));
        QCOMPARE(answer.requests.first().directory, QDir::homePath());
        QCOMPARE(WindowSettings::lastDatabaseDir(QString()), open.folder());
        QVERIFY(QFile::exists(open.filePath(written)));
        QCOMPARE(open.takeBoxes(), QStringList());
    }

    void exportEndsWhereItIsNotWanted_data()
    {
        addColumns<QString, bool, QString>("target", "isAccepted", "box");
        const QString own = "Exporting: Cannot export to currently open database!"_s;
        addRow("no options", "out.vrn"_s, false, QString());
        addRow("no target", QString(), true, QString());
        addRow("the open database", "test.vrn"_s, true, own);
        addRow("the same by another way", "folder/../test.vrn"_s, true, own);
        addRow("a link to it", "link.vrn"_s, true, own);
        addRow("a second name of it", "second.vrn"_s, true, own);
        addRow("what the dialog did not ask about", "other"_s, true,
               "Exporting: \"other.vrn\" already exists.\nDo you want to replace it?"_s);
    }

    void exportEndsWhereItIsNotWanted()
    {
        QFETCH(QString, target);
        QFETCH(bool, isAccepted);
        QFETCH(QString, box);
        LocalCollection open;
        open.addFiles(3);
        QDir(open.folder()).mkdir("folder"_s);
        QFile::link(open.path(), open.filePath("link.vrn"_s));
        QCOMPARE(::link(qPrintable(open.path()), qPrintable(open.filePath("second.vrn"_s))), 0);
        open.write("other.vrn"_s, "other");
        const QStringList before = QDir(open.folder()).entryList(QDir::Files | QDir::Hidden);
        const PathAnswer answer(target.isEmpty() ? QString() : open.filePath(target));
        open.answerBoxesWith(QMessageBox::No);
        answerOptions(isAccepted);
        ExportCommand(&open.mainView(), nullptr).exportSelection(ExportRequest::Database, allFiles(open));
        open.waitForWorker();
        QCOMPARE(open.takeBoxes(), box.isEmpty() ? QStringList() : QStringList(box));
        QCOMPARE(QDir(open.folder()).entryList(QDir::Files | QDir::Hidden), before);
        QCOMPARE(open.read(open.filePath("other.vrn"_s)), QByteArray("other"));
    }

    void nothingToExportIsTold()
    {
        LocalCollection open;
        const PathAnswer answer(open.filePath("out.csv"_s));
        ExportCommand(&open.mainView(), nullptr)
            .exportSelection(ExportRequest::Csv, ExportSelection::ofNode(open.tree(), AllFiles, 0));
        QCOMPARE(open.takeBoxes(), QStringList("Exporting: What is selected has no files to export."_s));
        QVERIFY(answer.requests.isEmpty());
    }

    void gesturesMeanFilesAndTags()
    {
        LocalCollection open;
        open.addFiles(6);
        const QVector<qint64> tags = open.addTags({"animals"_s, "lions"_s, "old"_s, "unused"_s});
        open.relations().addChildren(QString(), {tags.at(0)});
        open.relations().addChildren(QString::number(tags.at(0)), {tags.at(1)});
        open.mainView().linkTags({1, 2}, {tags.at(0)});
        open.mainView().linkTags({3}, {tags.at(1)});
        open.mainView().linkTags({2, 3}, {tags.at(2)});
        const qint64 node = open.addNode(tags.at(0));
        const qint64 inverted = open.manager()->addNodeBelow(tags.at(2), node);
        open.tree().changeTrOption(inverted, true);
        open.tree().changeInversion(inverted, true);
        const auto compare = [](const ExportSelection &selection, const QVector<qint64> &files,
                                const QVector<qint64> &withTags, bool hasAllTags) {
            QCOMPARE(selection.fileIds, files);
            QCOMPARE(selection.tagIds, withTags);
            QCOMPARE(selection.addAllTagsOfFiles, hasAllTags);
        };
        const BrowsTreeController &tree = open.tree();
        compare(ExportSelection::ofFiles({5, 2}), {5, 2}, {}, true);
        compare(ExportSelection::ofNode(tree, AllFiles, 0), {1, 2, 3, 4, 5, 6}, {}, true);
        compare(ExportSelection::ofNode(tree, AllFilesWithoutTags, 0), {4, 5, 6}, {}, true);
        compare(ExportSelection::ofNode(tree, TagNode, inverted), {1}, {tags.at(0), tags.at(2)}, true);
        compare(ExportSelection::ofNode(tree, TagNode, 999), {}, {}, true);
        compare(ExportSelection::ofFilesWithTags(open.mainView(), {tags.at(0), tags.at(3)}), {1, 2, 3},
                {tags.at(0), tags.at(3)}, true);
        compare(ExportSelection::ofTags(open.mainView(), {tags.at(0)}), {1, 2}, {tags.at(0)}, false);
    }
};

QTEST_MAIN(TestExchangeDialogs)
#include "tst_exchangedialogs.moc"
