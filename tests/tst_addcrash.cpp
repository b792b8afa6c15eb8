#include "app/addingsettings.h"
#include "tests/support/addingfixture.h"

#include <QEventLoop>
#include <QImage>
#include <QProcess>
#include <QSqlError>

#include <csignal>

Q_DECLARE_METATYPE(QSqlError)

namespace {

constexpr int smallFiles = 4000;

/** The child: adds a folder to a database and tells each step, so that it can be killed at any of them. */
int addAsChild(const QStringList &arguments)
{
    SettingsSandbox settings;
    AddingSettings::setLinkToFiles(arguments.at(4) == QLatin1String("external"));
    const SqliteQueryConstructor constructor;
    SqliteFileOperationProvider provider(&constructor, DBDetails::local(arguments.at(2)), nullptr);
    QEventLoop loop;
    QObject::connect(&provider, &FileOperationProvider::filesOperationProgress, &loop,
                     [](const QString &text, int percent) {
                         std::printf("%s %d\n", qPrintable(text.section(QLatin1Char(' '), 0, 0)), percent);
                         std::fflush(stdout);
                     });
    QObject::connect(&provider, &FileOperationProvider::duplicatesReady, &loop, &QEventLoop::quit);
    provider.addFiles({arguments.at(3)}, {}, true, 0);
    loop.exec();
    return 0;
}

} // namespace

class TestAddCrash : public QObject
{
    Q_OBJECT

private slots:
    void killedInTheMiddle_data();
    void killedInTheMiddle();
    void transactionLost_data();
    void transactionLost();
};

void TestAddCrash::killedInTheMiddle_data()
{
    QTest::addColumn<QString>("mode");
    QTest::addColumn<int>("files");
    QTest::addColumn<int>("size");
    QTest::addColumn<QByteArray>("step");
    QTest::newRow("external, while copies are looked for")
        << QStringLiteral("external") << smallFiles << 10 << QByteArray("Grouping 10");
    QTest::newRow("external, early") << QStringLiteral("external") << smallFiles << 10
                                     << QByteArray("Adding 10");
    QTest::newRow("external, late") << QStringLiteral("external") << smallFiles << 10
                                    << QByteArray("Adding 90");
    // So much that pages leave the memory for the file long before the end.
    QTest::newRow("internal, late") << QStringLiteral("internal") << 100 << 2000000
                                    << QByteArray("Adding 80");
}

void TestAddCrash::killedInTheMiddle()
{
    QFETCH(QString, mode);
    QFETCH(int, files);
    QFETCH(int, size);
    QFETCH(QByteArray, step);
    AddingFixture fixture;
    fixture.add({fixture.write(QStringLiteral("kept.txt"), "kept")});
    for (int i = 0; i < files; ++i)
        fixture.write(QStringLiteral("top/%1/%2").arg(i % 7).arg(i),
                      QByteArray::number(i).leftJustified(size, '.'));
    const QStringList before = fixture.rows(QStringLiteral("SELECT * FROM files JOIN file_paths"));

    QProcess child;
    child.start(QCoreApplication::applicationFilePath(),
                {QStringLiteral("add"), fixture.databasePath(), fixture.path(QStringLiteral("top")), mode});
    QVERIFY(child.waitForStarted());
    bool isThere = false;
    while (!isThere && child.waitForReadyRead(30000)) {
        while (child.canReadLine() && !isThere)
            isThere = child.readLine().trimmed() == step;
    }
    QVERIFY2(isThere, "the child never came so far");
    QCOMPARE(::kill(pid_t(child.processId()), SIGKILL), 0);
    QVERIFY(child.waitForFinished());
    QCOMPARE(child.exitStatus(), QProcess::CrashExit);

    QCOMPARE(fixture.integrity(), QStringLiteral("ok"));
    QCOMPARE(fixture.rows(QStringLiteral("SELECT * FROM files JOIN file_paths")), before);
    for (const char *table : {"file_tag", "tags", "tb_nodes", "tb_node_links", "storage", "storage_info"})
        QCOMPARE(fixture.count(QLatin1String(table)), 0);
    AddingSettings::setLinkToFiles(mode == QLatin1String("external"));
    fixture.add({fixture.path(QStringLiteral("top"))}, {}, true, 0);
    QCOMPARE(fixture.count(QStringLiteral("files")), files + 1);
}

void TestAddCrash::transactionLost_data()
{
    QTest::addColumn<QString>("table");
    QTest::addColumn<bool>("link");
    for (const char *table : {"tags", "tb_nodes", "files", "thumbnails", "file_paths", "file_tag"})
        QTest::newRow(table) << QString::fromLatin1(table) << true;
    for (const char *table : {"storage", "storage_info"})
        QTest::newRow(table) << QString::fromLatin1(table) << false;
}

void TestAddCrash::transactionLost()
{
    QFETCH(QString, table);
    QFETCH(bool, link);
    AddingFixture fixture;
    AddingSettings::setLinkToFiles(link);
    // A full disk ends the whole transaction like this, and with its journal gone has room for further rows.
    QVERIFY(fixture.run(
        QStringLiteral("CREATE TRIGGER full BEFORE INSERT ON %1 WHEN (SELECT count(*) FROM %1)=%2 "
                       "BEGIN SELECT raise(ROLLBACK, 'disk full'); END")
            .arg(table)
            .arg(table == QLatin1String("tags") || table == QLatin1String("tb_nodes") ? 0 : 3)));
    QImage picture(2, 2, QImage::Format_RGB32);
    for (int i = 0; i < 20; ++i) {
        picture.fill(QColor(i, 0, 0));
        fixture.write(QStringLiteral("top/%1.png").arg(i), QByteArray());
        QVERIFY(picture.save(fixture.path(QStringLiteral("top/%1.png").arg(i))));
    }
    QSignalSpy errors(&fixture.provider(), &FileOperationProvider::errorOccured);
    QSignalSpy files(&fixture.provider(), &FileOperationProvider::updatedFiles);
    QSignalSpy finished(&fixture.provider(), &FileOperationProvider::finishedFilesOperation);
    fixture.add({fixture.path(QStringLiteral("top"))}, {}, true, 0);

    for (const char *name : {"files", "file_paths", "file_tag", "tags", "tb_nodes", "tb_node_links",
                             "thumbnails", "storage", "storage_info"})
        QVERIFY2(fixture.count(QLatin1String(name)) == 0, name);
    QCOMPARE(files.size(), 0);
    QCOMPARE(finished.size(), 1);
    QVERIFY(!errors.isEmpty());
    QVERIFY(errors.first().first().value<QSqlError>().text().contains(QLatin1String("disk full")));
}

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = application.arguments();
    if (arguments.size() == 5 && arguments.at(1) == QLatin1String("add"))
        return addAsChild(arguments);
    TestAddCrash test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_addcrash.moc"
