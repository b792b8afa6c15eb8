#include "tests/support/localcollection.h"
#include "ui/dialogs/propertiesdialog.h"
#include "ui/docks/metainfodock.h"

#include <QLabel>
#include <QTextEdit>

namespace {

QString textOf(const MetaInfoDock &dock, const char *label)
{
    return dock.findChild<QLabel *>(QLatin1String(label))->text();
}

} // namespace

/** What the dock and the dialog tell of one file. */
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
        QCOMPARE(textOf(dock, "tagsLabel"), "Red, Blue"_s);

        fixture.tags().renameTag(tagIds.last(), "Green"_s);
        QCOMPARE(textOf(dock, "tagsLabel"), "Red, Green"_s);
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
        QCOMPARE(lines, QStringList({"Name: %1 %7"_s, "Description: of %1"_s, "Size: 21474836480 bytes"_s,
                                     "Absolute path: "_s + path, "Relative path: "_s + relPath, QString()}));
    }
};

QTEST_MAIN(TestFileFacts)
#include "tst_filefacts.moc"
