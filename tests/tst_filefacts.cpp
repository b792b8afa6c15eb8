#include "app/settings/windowsettings.h"
#include "core/records/file.h"
#include "core/records/filekind.h"
#include "tests/support/localcollection.h"
#include "ui/dialogs/browsingtreetagsdialog.h"
#include "ui/dialogs/propertiesdialog.h"
#include "ui/dialogs/tagremovaldialog.h"
#include "ui/docks/metainfodock.h"

#include <QLabel>
#include <QListWidget>
#include <QTextEdit>

namespace {

QString textOf(const MetaInfoDock &dock, const char *label)
{
    return dock.findChild<QLabel *>(QLatin1String(label))->text();
}

} // namespace

/** What the dock and the dialog tell of one file, and the dialogs that change its tags. */
class TestFileFacts : public QObject
{
    Q_OBJECT

private slots:
    void dockFollowsFile()
    {
        LocalCollection fixture;
        const QVector<qint64> tagIds = fixture.addTags({"Red"_s, "Blue"_s});
        const qint64 id = fixture.addExternal("<b>100%1<i>.txt"_s, tagIds);
        MetaInfoDock dock;
        dock.setController(&fixture.mainView());
        dock.selectFile(id);
        QCOMPARE(textOf(dock, "nameLabel"), "<b>100%1<i>.txt"_s);
        QCOMPARE(dock.findChild<QLabel *>("nameLabel"_s)->textFormat(), Qt::PlainText);
        QCOMPARE(textOf(dock, "tagsLabel"), "Blue, Red"_s);
        QVERIFY(textOf(dock, "sizeLabel").contains(QString::number(fixture.file(id)->size())));

        fixture.tags().renameTag(tagIds.last(), "Green"_s);
        QCOMPARE(textOf(dock, "tagsLabel"), "Green, Red"_s);
        fixture.mainView().unlinkTags({id}, {tagIds.first()});
        QCOMPARE(textOf(dock, "tagsLabel"), "Green"_s);
        fixture.mainView().updateFileDescription(id, "of %2 things"_s);
        QCOMPARE(textOf(dock, "descriptionLabel"), "of %2 things"_s);
        fixture.mainView().updateFileDescription(id, QString(1000000, QLatin1Char('x')));
        QVERIFY(textOf(dock, "descriptionLabel").size() < 10000);
        LocalCollection::run("UPDATE files SET file_name=replace(hex(zeroblob(50000)),'0','x')"_s);
        fixture.manager()->reloadFiles({id});
        const PropertiesDialog properties(*fixture.file(id));
        for (const QString &shown :
             {textOf(dock, "nameLabel"), dock.findChild<QLabel *>("nameLabel"_s)->toolTip(),
              properties.findChild<QTextEdit *>()->toPlainText()})
            QVERIFY(shown.contains(QLatin1String("xxx")) && shown.size() < 12000);
        SharedFacts shared;
        dock.setSharedFacts([&shared] { return shared; });
        shared = {3, tagIds, FileKind::external};
        dock.selectFile(id);
        QCOMPARE(textOf(dock, "nameLabel"), "3 files selected"_s);
        QCOMPARE(textOf(dock, "tagsLabel"), "Green, Red"_s);
        QVERIFY(!textOf(dock, "kindLabel").isEmpty());
        shared = {3, {}, -1};
        dock.selectFile(id);
        QCOMPARE(textOf(dock, "tagsLabel"), "none in common"_s);
        QCOMPARE(textOf(dock, "kindLabel"), QString());
        shared = {1, {}, -1};
        dock.selectFile(99999);
        QCOMPARE(textOf(dock, "nameLabel"), "No file selected"_s);
        dock.selectFile(id);
        fixture.mainView().deleteFiles({id});
        fixture.waitForWorker();
        QCOMPARE(textOf(dock, "nameLabel"), "No file selected"_s);
        dock.selectFile(fixture.addExternal("b.txt"_s));
        dock.setController(nullptr);
        QCOMPARE(textOf(dock, "nameLabel"), "No file selected"_s);
    }

    void propertiesText_data()
    {
        addColumns<int, QString, QString>("internal", "path", "relPath");
        addRow("external", 0, "/a/%2.txt"_s, "../%3.txt"_s);
        addRow("internal", 1, "internal"_s, "internal"_s);
        addRow("hyperlink", 2, QString(), QString());
    }

    void propertiesText()
    {
        QFETCH(int, internal);
        QFETCH(QString, path);
        QFETCH(QString, relPath);
        const File file(1, qint64(5) << 32, 1600000000, 1500000000, 1, "%1 %7"_s, "of %1"_s, "ABCD123"_s,
                        internal == 0 ? path : QString(), internal == 0 ? relPath : QString(), 1, 0, 0,
                        internal);
        QStringList lines = PropertiesDialog::text(file).split(QLatin1Char('\n'));
        QVERIFY(lines.at(2).contains(QDateTime::fromSecsSinceEpoch(1600000000).toString("hh:mm:ss"_s)));
        QVERIFY(lines.takeAt(3).startsWith("Modified: "_s));
        lines.removeAt(2);
        QCOMPARE(lines, QStringList({"Name: %1 %7"_s, "Description: of %1"_s,
                                     "Size: %1 bytes"_s.arg(QLocale().toString(Q_INT64_C(21474836480))),
                                     "Absolute path: "_s + path, "Relative path: "_s + relPath, QString()}));
    }

    /** The two dialogs that link tags to files, with the boxes worked by keys. */
    void boxesLinkWhatWasChanged_data()
    {
        addColumns<bool, QString, QString>("isTree", "clicks", "linked"); // names; tags of each file
        addRow("untouched", false, QString(), "all some/all"_s);
        addRow("unticked", false, "all"_s, "some/"_s);
        addRow("ticked", false, "some"_s, "all some/all some"_s);
        addRow("there and back", false, "some some"_s, "all some/all"_s);
        addRow("tree, untouched", true, QString(), "all some/all"_s);
        addRow("tree, half ticked goes on to ticked", true, "some"_s, "all some/all some"_s);
        addRow("tree, and on to unticked", true, "some some"_s, "all/all"_s);
        addRow("tree, all the way round", true, "some some some"_s, "all some/all"_s);
        addRow("tree, several", true, "none some"_s, "all some none/all some none"_s);
        addRow("tree, all or nothing", true, "none all refused"_s, "all some/all"_s);
    }

    void boxesLinkWhatWasChanged()
    {
        QFETCH(bool, isTree);
        QFETCH(QString, clicks);
        LocalCollection fixture;
        const QVector<qint64> tags = fixture.addTags({"all"_s, "some"_s, "none"_s});
        fixture.addTags({"nowhere"_s});
        fixture.tree().addNodesBelow(tags, 0);
        const QVector<qint64> ids = {fixture.addExternal("a"_s, {tags.at(0), tags.at(1)}),
                                     fixture.addExternal("b"_s, {tags.at(0)})};
        std::unique_ptr<QDialog> dialog;
        if (isTree)
            dialog = std::make_unique<BrowsingTreeTagsDialog>(&fixture.mainView(), ids);
        else
            dialog = std::make_unique<TagRemovalDialog>(&fixture.mainView(), ids);
        auto *list = dialog->findChild<QListWidget *>();
        QCOMPARE(list->count(), isTree ? 3 : 2);
        const QListWidgetItem *partial = list->findItems("some"_s, Qt::MatchExactly).value(0);
        QCOMPARE(partial->checkState(), isTree ? Qt::PartiallyChecked : Qt::Unchecked);
        QCOMPARE(dialog->findChild<QLabel *>("headingLabel"_s)->text(),
                 "Check or uncheck boxes to link or unlink the following tags from these files"_s);

        const bool isRefused = clicks.contains(QLatin1String("refused"));
        if (isRefused)
            LocalCollection::run("CREATE TRIGGER refuse BEFORE DELETE ON file_tag "
                                 "BEGIN SELECT RAISE(ABORT, 'refused'); END"_s);
        dialog->show();
        QVERIFY(!dialog->windowTitle().isEmpty());
        QCOMPARE(dialog->focusWidget(), list);
        QVERIFY(2 * dialog->findChild<QLabel *>("headingLabel"_s)->width() > dialog->width());
        for (const QString &name : clicks.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
            list->setCurrentItem(list->findItems(name, Qt::MatchExactly).value(0));
            QTest::keyClick(list, Qt::Key_Space);
        }
        QTest::keyClick(dialog.get(), Qt::Key_Return);
        QCOMPARE(dialog->isVisible(), isRefused);
        QStringList linked;
        for (qint64 id : ids)
            linked << fixture.mainView().tagNames(fixture.file(id)->tags()).remove(QLatin1Char(','));
        QTEST(linked.join(QLatin1Char('/')), "linked");
        QCOMPARE(WindowSettings::layout("BrowsingTreeTags/geometry"_s).isEmpty(), !isTree || isRefused);
    }
};

QTEST_MAIN(TestFileFacts)
#include "tst_filefacts.moc"
