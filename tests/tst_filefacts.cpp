#include "tests/support/filesfixture.h"
#include "ui/dialogs/propertiesdialog.h"
#include "ui/docks/metainfodock.h"

#include <QLabel>

/** What the dock and the dialog tell of one file. */
class TestFileFacts : public QObject
{
    Q_OBJECT

private slots:
    void dockFollowsFile();
    void dockIsEmptied_data();
    void dockIsEmptied();
    void propertiesText_data();
    void propertiesText();
};

namespace {

QString textOf(const MetaInfoDock &dock, const char *label)
{
    return dock.findChild<QLabel *>(QLatin1String(label))->text();
}

} // namespace

void TestFileFacts::dockFollowsFile()
{
    FilesFixture fixture;
    const QVector<qint64> tagIds = fixture.addTags({QStringLiteral("Red"), QStringLiteral("Blue")});
    const qint64 id = fixture.addExternal(QStringLiteral("<b>100%1<i>.txt"), tagIds);
    MetaInfoDock dock;
    dock.setController(&fixture.mainView());
    dock.selectFile(id);
    QCOMPARE(textOf(dock, "nameLabel"), QStringLiteral("<b>100%1<i>.txt"));
    QCOMPARE(dock.findChild<QLabel *>(QStringLiteral("nameLabel"))->textFormat(), Qt::PlainText);
    QCOMPARE(textOf(dock, "tagsLabel"), QStringLiteral("Red, Blue"));

    fixture.tags().renameTag(tagIds.first(), QStringLiteral("Green"));
    QCOMPARE(textOf(dock, "tagsLabel"), QStringLiteral("Green, Blue"));
    fixture.mainView().unlinkTags({id}, {tagIds.first()});
    QCOMPARE(textOf(dock, "tagsLabel"), QStringLiteral("Blue"));
    fixture.mainView().updateFileDescription(id, QStringLiteral("of %2 things"));
    QCOMPARE(textOf(dock, "descriptionLabel"), QStringLiteral("of %2 things"));
    fixture.mainView().deleteFiles({id});
    fixture.waitForWorker();
    QCOMPARE(textOf(dock, "nameLabel"), QStringLiteral("No file selected"));
    QCOMPARE(textOf(dock, "tagsLabel"), QString());
}

void TestFileFacts::dockIsEmptied_data()
{
    QTest::addColumn<qint64>("id");
    QTest::newRow("zero") << qint64(0);
    QTest::newRow("negative") << qint64(-1);
    QTest::newRow("unknown") << qint64(99999);
}

void TestFileFacts::dockIsEmptied()
{
    QFETCH(qint64, id);
    FilesFixture fixture;
    const qint64 known = fixture.addExternal(QStringLiteral("a.txt"));
    MetaInfoDock dock;
    dock.setController(&fixture.mainView());
    dock.selectFile(known);
    QCOMPARE(textOf(dock, "nameLabel"), QStringLiteral("a.txt"));
    dock.selectFile(id);
    QCOMPARE(textOf(dock, "nameLabel"), QStringLiteral("No file selected"));
    dock.selectFile(known);
    dock.setController(nullptr);
    QCOMPARE(textOf(dock, "nameLabel"), QStringLiteral("No file selected"));
}

void TestFileFacts::propertiesText_data()
{
    QTest::addColumn<int>("internal");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("relPath");
    QTest::newRow("external") << 0 << QStringLiteral("/a/%2.txt") << QStringLiteral("../%3.txt");
    QTest::newRow("internal") << 1 << QStringLiteral("internal") << QStringLiteral("internal");
    QTest::newRow("hyperlink") << 2 << QString() << QString();
}

void TestFileFacts::propertiesText()
{
    QFETCH(int, internal);
    QFETCH(QString, path);
    QFETCH(QString, relPath);
    const File file(1, qint64(5) << 32, 1600000000, 1500000000, 1, QStringLiteral("%1 %7"),
                    QStringLiteral("of %1"), QStringLiteral("ABCD123"), internal == 0 ? path : QString(),
                    internal == 0 ? relPath : QString(), 1, 0, 0, internal);
    const QStringList lines = PropertiesDialog::text(file).split(QLatin1Char('\n'));
    QCOMPARE(lines.size(), 8);
    QCOMPARE(lines.at(0), QStringLiteral("Name: %1 %7"));
    QCOMPARE(lines.at(1), QStringLiteral("Description: of %1"));
    QVERIFY(
        lines.at(2).contains(QDateTime::fromSecsSinceEpoch(1600000000).toString(QStringLiteral("hh:mm:ss"))));
    QVERIFY(lines.at(3).startsWith(QStringLiteral("Modified: ")));
    QCOMPARE(lines.at(4), QStringLiteral("Size: 21474836480 bytes"));
    QCOMPARE(lines.at(5), QStringLiteral("Absolute path: ") + path);
    QCOMPARE(lines.at(6), QStringLiteral("Relative path: ") + relPath);
}

QTEST_MAIN(TestFileFacts)
#include "tst_filefacts.moc"
