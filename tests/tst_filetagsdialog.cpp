#include "app/settings/windowsettings.h"
#include "core/records/file.h"
#include "tests/support/localcollection.h"
#include "ui/dialogs/browsingtreetagsdialog.h"
#include "ui/dialogs/tagremovaldialog.h"

#include <QLabel>
#include <QListWidget>

/** The two dialogs that link tags to files, with the boxes worked by keys. */
class TestFileTagsDialog : public QObject
{
    Q_OBJECT

private slots:
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

QTEST_MAIN(TestFileTagsDialog)
#include "tst_filetagsdialog.moc"
