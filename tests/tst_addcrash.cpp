#include "app/addingsettings.h"
#include "tests/support/addingfixture.h"

#include <QImage>

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
    void killedInTheMiddle_data()
    {
        addColumns<QString, int, int, QByteArray>("mode", "files", "size", "step");
        addRow("external, while copies are looked for", "external"_s, smallFiles, 10,
               QByteArray("Grouping 10"));
        addRow("external, early", "external"_s, smallFiles, 10, QByteArray("Adding 10"));
        addRow("external, late", "external"_s, smallFiles, 10, QByteArray("Adding 90"));
        // So much that pages leave the memory for the file long before the end.
        addRow("internal, late", "internal"_s, 100, 2000000, QByteArray("Adding 80"));
    }

    void killedInTheMiddle()
    {
        QFETCH(QString, mode);
        QFETCH(int, files);
        QFETCH(int, size);
        QFETCH(QByteArray, step);
        AddingFixture fixture;
        fixture.add({fixture.write("kept.txt"_s, "kept")});
        for (int i = 0; i < files; ++i)
            fixture.write("top/%1/%2"_s.arg(i % 7).arg(i), QByteArray::number(i).leftJustified(size, '.'));
        const QStringList before = fixture.rows("SELECT * FROM files JOIN file_paths"_s);

        QProcess child;
        child.start(QCoreApplication::applicationFilePath(),
                    {"add"_s, fixture.databasePath(), fixture.path("top"_s), mode});
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

        QCOMPARE(fixture.integrity(), "ok"_s);
        QCOMPARE(fixture.rows("SELECT * FROM files JOIN file_paths"_s), before);
        for (const char *table : {"file_tag", "tags", "tb_nodes", "tb_node_links", "storage", "storage_info"})
            QCOMPARE(fixture.count(QLatin1String(table)), 0);
        AddingSettings::setLinkToFiles(mode == QLatin1String("external"));
        fixture.add({fixture.path("top"_s)}, {}, true, 0);
        QCOMPARE(fixture.count("files"_s), files + 1);
    }

    void transactionLost_data()
    {
        addColumns<QString, bool>("table", "link");
        for (const char *table : {"tags", "tb_nodes", "files", "thumbnails", "file_paths", "file_tag"})
            addRow(table, QString::fromLatin1(table), true);
        for (const char *table : {"storage", "storage_info"})
            addRow(table, QString::fromLatin1(table), false);
    }

    void transactionLost()
    {
        QFETCH(QString, table);
        QFETCH(bool, link);
        AddingFixture fixture;
        AddingSettings::setLinkToFiles(link);
        // A full disk ends the whole transaction like this, and with its journal gone has room for further
        // rows.
        QVERIFY(fixture.run(
            "CREATE TRIGGER full BEFORE INSERT ON %1 WHEN (SELECT count(*) FROM %1)=%2 "
            "BEGIN SELECT raise(ROLLBACK, 'disk full'); END"_s.arg(table)
                .arg(table == QLatin1String("tags") || table == QLatin1String("tb_nodes") ? 0 : 3)));
        QImage picture(2, 2, QImage::Format_RGB32);
        for (int i = 0; i < 20; ++i) {
            picture.fill(QColor(i, 0, 0));
            QVERIFY(picture.save(fixture.write("top/%1.png"_s.arg(i), QByteArray())));
        }
        fixture.add({fixture.path("top"_s)}, {}, true, 0);

        for (const char *name : {"files", "file_paths", "file_tag", "tags", "tb_nodes", "tb_node_links",
                                 "thumbnails", "storage", "storage_info"})
            QVERIFY2(fixture.count(QLatin1String(name)) == 0, name);
        QCOMPARE(fixture.files.size(), 0);
        QCOMPARE(fixture.finished.size(), 1);
        QVERIFY(!fixture.errors.isEmpty());
        const auto error = fixture.errors.first().first().value<QSqlError>();
        QVERIFY(error.text().contains(QLatin1String("disk full")));
    }
};

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
