#include "app/settings/addingsettings.h"
#include "tests/support/addingfixture.h"

#include <QImage>

#include <csignal>

Q_DECLARE_METATYPE(QSqlError)

namespace {
const ImportOptions importOptions{true, true, true, true, true, true, ExchangeSettings::AppendDescriptions};

/**
 * The child: adds a folder to a database, or imports another one, and tells each step, so that it can be
 * killed at any of them.
 */
int addAsChild(const QStringList &arguments)
{
    SettingsSandbox settings;
    const QString mode = arguments.at(4);
    AddingSettings::setLinkToFiles(mode == QLatin1String("external"));
    const SqliteQueryConstructor constructor;
    SqliteFileOperationProvider provider(&constructor, DBDetails::local(arguments.at(2)), nullptr);
    QEventLoop loop;
    QObject::connect(&provider, &FileOperationProvider::filesOperationProgress, &loop,
                     [](const QString &text, int percent) {
                         std::printf("%s %d\n", qPrintable(text.section(QLatin1Char(' '), 0, 0)), percent);
                         std::fflush(stdout);
                     });
    QObject::connect(&provider, &FileOperationProvider::duplicatesReady, &loop, &QEventLoop::quit);
    QObject::connect(&provider, &FileOperationProvider::exchangeDone, &loop, &QEventLoop::quit);
    if (mode == QLatin1String("import"))
        provider.importDatabase(arguments.at(3), false, importOptions);
    else
        provider.addFiles({arguments.at(3)}, {}, true, 0);
    return loop.exec();
}

const QStringList filled{"tags"_s,    "tb_nodes"_s,     "tb_node_links"_s, "file_tag"_s,
                         "storage"_s, "storage_info"_s, "thumbnails"_s};
} // namespace

class TestAddCrash : public QObject
{
    Q_OBJECT

private slots:
    void killedInTheMiddle_data()
    {
        addColumns<QString, int, int, QByteArray>("mode", "files", "size", "step");
        addRow("while copies are looked for", "external"_s, 4000, 10, QByteArray("Grouping 10"));
        addRow("early", "external"_s, 4000, 10, QByteArray("Adding 10"));
        addRow("late", "external"_s, 4000, 10, QByteArray("Adding 90"));
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
        const char *everything = "SELECT * FROM files JOIN file_paths";
        const QStringList before = Sql::rows(everything);

        killAt(step, {"add"_s, fixture.databasePath(), fixture.path("top"_s), mode});
        if (QTest::currentTestFailed())
            return;
        QCOMPARE(fixture.integrity(), "ok"_s);
        QCOMPARE(Sql::rows(everything), before);
        for (const QString &table : filled)
            QCOMPARE(Sql::count(table), 0);
        AddingSettings::setLinkToFiles(mode == QLatin1String("external"));
        fixture.add({fixture.path("top"_s)}, {}, true, 0);
        QCOMPARE(Sql::count("files"_s), files + 1);
    }

    void importKilledInTheMiddle()
    {
        AddingFixture fixture;
        const QString path = fixture.filePath("source.vrn"_s);
        {
            OtherConnection source(path, "source"_s);
            source.run("PRAGMA synchronous=OFF"_s);
            for (const QString &statement : Schema::creationStatements())
                source.run(statement);
            const QString numbers =
                "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<200) "_s;
            source.run("INSERT INTO files "_s + numbers +
                       "SELECT i,'f'||i,'',1000000,1,1,'S'||i,1,i,0,i,1 FROM n"_s);
            source.run("INSERT INTO storage SELECT file_id, zeroblob(1000000) FROM files"_s);
            source.run("INSERT INTO storage_info SELECT file_id, 0 FROM files"_s);
            source.run("INSERT INTO tags VALUES (1,'a','',1,'')"_s);
        }
        // So much that pages leave the memory for the file long before the end.
        killAt("Copying 73", {"add"_s, fixture.databasePath(), path, "import"_s});
        if (QTest::currentTestFailed())
            return;
        QCOMPARE(fixture.integrity(), "ok"_s);
        for (const QString &table : QStringList{"files"_s} + filled)
            QCOMPARE(Sql::count(table), 0);
        fixture.provider().importDatabase(path, false, importOptions);
        fixture.wait();
        QCOMPARE(Sql::count("files"_s), 200);
    }

    void transactionLost_data()
    {
        addColumns<QString, int>("table", "rows");
        for (const char *table : {"tags", "tb_nodes"})
            addRow(table, QString::fromLatin1(table), 0);
        for (const char *table : {"files", "thumbnails", "file_paths", "file_tag", "storage", "storage_info"})
            addRow(table, QString::fromLatin1(table), 3);
    }

    void transactionLost()
    {
        QFETCH(QString, table);
        QFETCH(int, rows);
        AddingFixture fixture;
        AddingSettings::setLinkToFiles(!table.startsWith(QLatin1String("storage")));
        // A full disk ends the whole transaction like this, and with its journal gone has room for more rows.
        QVERIFY(Sql::run("CREATE TRIGGER full BEFORE INSERT ON %1 WHEN (SELECT count(*) FROM %1)=%2 "
                         "BEGIN SELECT raise(ROLLBACK, 'disk full'); END"_s.arg(table)
                             .arg(rows)));
        QImage picture(2, 2, QImage::Format_RGB32);
        for (int i = 0; i < 20; ++i) {
            picture.fill(QColor(i, 0, 0));
            QVERIFY(picture.save(fixture.write("top/%1.png"_s.arg(i), QByteArray())));
        }
        fixture.add({fixture.path("top"_s)}, {}, true, 0);
        for (const QString &name : QStringList{"files"_s, "file_paths"_s} + filled)
            QVERIFY2(Sql::count(name) == 0, qPrintable(name));
        QCOMPARE(fixture.files.size(), 0);
        QCOMPARE(fixture.finished.size(), 1);
        QVERIFY(!fixture.errors.isEmpty());
        const auto shortfall = fixture.errors.first().first().value<OperationShortfall>();
        QVERIFY(shortfall.errors.first().text().contains(QLatin1String("disk full")));
    }

private:
    static void killAt(const QByteArray &step, const QStringList &arguments)
    {
        QProcess child;
        child.start(QCoreApplication::applicationFilePath(), arguments);
        bool isThere = false;
        while (!isThere && child.waitForReadyRead(30000)) {
            while (child.canReadLine() && !isThere)
                isThere = child.readLine().trimmed() == step;
        }
        QVERIFY2(isThere, "the child never came so far");
        QCOMPARE(::kill(pid_t(child.processId()), SIGKILL), 0);
        QVERIFY(child.waitForFinished() && child.exitStatus() == QProcess::CrashExit);
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
