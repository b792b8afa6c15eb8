#include "core/providers/mainviewprovider.h"
#include "tests/support/serverdatabase.h"

#include <algorithm>
#include <memory>
#include <numeric>

using Ids = QVector<qint64>;

/** Loading and changing file records against real databases. */
class TestMainViewProvider : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase_data() { addBackEnds(); }
    void init() { m_database = makeTestDatabase(); }
    void cleanup() { m_database.reset(); }

    void loadedFileRows()
    {
        QVERIFY(m_database->addFiles(3));
        QVERIFY(m_database->addTags(2));
        QVERIFY(m_database->run("INSERT INTO file_tag VALUES (1,1),(1,2),(3,2)"));
        QVERIFY(m_database->run("INSERT INTO file_paths VALUES (1,'not mine','x'),(2,'/a','a')"));
        MainViewProvider files(m_database->constructor());
        QStringList seen;
        connect(&files, &MainViewProvider::filesUpdated, this, [&seen](bool, const TableData &table) {
            for (const TableRowData *row : table) {
                QStringList values;
                for (const char *column : {"file_id", "tag_id", "file_name", "path"})
                    values.append(row->value(QLatin1String(column)).toString());
                seen.append(values.join(QLatin1Char('|')));
            }
        });
        files.loadFiles({3, 1, 2, 99});
        QCOMPARE(seen, QStringList({"1|1|f1|"_s, "1|2||"_s, "2|0|f2|/a"_s, "3|2|f3|"_s}));
    }

    void allFilesEndWithAnEmptySlice()
    {
        QVERIFY(m_database->addFiles(9000));
        QVERIFY(m_database->addTags(3));
        QVERIFY(m_database->run("INSERT INTO file_tag SELECT file_id,tag_id FROM files CROSS JOIN tags"));
        MainViewProvider files(m_database->constructor());
        QVector<int> sizes;
        QMap<qint64, int> rowsOfFile;
        connect(&files, &MainViewProvider::gotAllFilesInfo, this, [&](bool ok, const TableData &table) {
            sizes.append(ok ? table.size() : -1);
            for (const TableRowData *row : table)
                ++rowsOfFile[row->value("file_id"_s).toLongLong()];
        });
        files.loadAllFiles();
        QVERIFY(sizes.size() > 2);
        QCOMPARE(sizes.takeLast(), 0);
        QVERIFY(!sizes.contains(0) && !sizes.contains(-1));
        QCOMPARE(rowsOfFile.size(), 9000);
        QVERIFY(std::all_of(rowsOfFile.cbegin(), rowsOfFile.cend(), [](int rows) { return rows == 3; }));

        sizes.clear();
        m_database->close();
        files.loadAllFiles();
        QCOMPARE(sizes, QVector<int>({-1}));
    }

    void manyFilesComeInWholePieces()
    {
        QVERIFY(m_database->addFiles(10000));
        QVERIFY(m_database->addTags(3));
        QVERIFY(m_database->run("INSERT INTO file_tag SELECT file_id,tag_id FROM files CROSS JOIN tags"));
        MainViewProvider files(m_database->constructor());
        QMap<qint64, int> rowsOfFile;
        int pieces = 0;
        int splitFiles = 0;
        connect(&files, &MainViewProvider::filesUpdated, this, [&](bool ok, const TableData &table) {
            QVERIFY(ok);
            ++pieces;
            QMap<qint64, int> here;
            for (const TableRowData *row : table)
                ++here[row->value("file_id"_s).toLongLong()];
            for (const int rows : here)
                splitFiles += rows == 3 ? 0 : 1;
            for (auto file = here.cbegin(); file != here.cend(); ++file)
                rowsOfFile[file.key()] += file.value();
            // A receiver may use the connection.
            QVERIFY(QSqlQuery().exec("UPDATE files SET load_id=2 WHERE file_id=1"_s));
        });
        Ids ids(10000);
        std::iota(ids.begin(), ids.end(), 1);
        files.loadFiles(ids);
        QVERIFY(pieces > 1);
        QCOMPARE(splitFiles, 0);
        QCOMPARE(rowsOfFile.size(), 10000);
    }

    void linkingLeavesOutExistingPairs()
    {
        QVERIFY(m_database->addFiles(3));
        QVERIFY(m_database->addTags(3));
        QVERIFY(m_database->run("INSERT INTO file_tag VALUES (1,1),(2,3)"));
        MainViewProvider files(m_database->constructor());
        const ErrorCount errors(files);
        QSignalSpy updates(&files, &MainViewProvider::filesUpdated);
        QVERIFY(files.linkTags({1, 2, 2, 77}, {1, 3, 1, 88}));
        QCOMPARE(m_database->rows("SELECT file_id,tag_id FROM file_tag ORDER BY 1,2"),
                 QStringList({"1|1"_s, "1|3"_s, "2|1"_s, "2|3"_s}));
        QCOMPARE(errors.count(), 0);
        QCOMPARE(updates.count(), 1);
    }

    void linkingIsAllOrNothing()
    {
        QVERIFY(m_database->addFiles(12000));
        QVERIFY(m_database->addTags(2));
        // Fails behind the first piece of ids.
        QVERIFY(m_database->refuse("INSERT ON file_tag"_s, "new.file_id=11999"_s));
        MainViewProvider files(m_database->constructor());
        const ErrorCount errors(files);
        QSignalSpy updates(&files, &MainViewProvider::filesUpdated);
        Ids ids(12000);
        std::iota(ids.begin(), ids.end(), 1);
        QVERIFY(!files.linkTags(ids, {1, 2}));
        QCOMPARE(m_database->value("SELECT count(*) FROM file_tag"), "0"_s);
        QCOMPARE(errors.count(), 1);
        QCOMPARE(updates.count(), 0);

        QVERIFY(m_database->permit("file_tag"_s));
        QVERIFY(files.linkTags(ids, {1, 2}));
        QCOMPARE(m_database->value("SELECT count(*) FROM file_tag"), "24000"_s);
    }

    void unlinkingTakesOnlyTheProductOfBothLists()
    {
        QVERIFY(m_database->addFiles(3));
        QVERIFY(m_database->addTags(3));
        QVERIFY(m_database->run("INSERT INTO file_tag SELECT file_id,tag_id FROM files CROSS JOIN tags"));
        MainViewProvider files(m_database->constructor());
        QVERIFY(files.unlinkTags({1, 2}, {1, 3}));
        QCOMPARE(m_database->rows("SELECT file_id,tag_id FROM file_tag ORDER BY 1,2"),
                 QStringList({"1|2"_s, "2|2"_s, "3|1"_s, "3|2"_s, "3|3"_s}));
    }

    void pathUpdatesLeaveInternalFilesAlone()
    {
        QVERIFY(m_database->addFiles(2));
        QVERIFY(m_database->run("INSERT INTO file_paths VALUES (1,'/other','o'),(2,'/own','o')"));
        MainViewProvider files(m_database->constructor());
        files.updateFilePath(1, "path"_s, "/lost"_s); // internal: 1 is its block
        files.updateFilePath(2, "path"_s, "/new"_s);
        QCOMPARE(m_database->rows("SELECT path FROM file_paths ORDER BY path_id"),
                 QStringList({"/other"_s, "/new"_s}));
    }

private:
    std::unique_ptr<TestDatabase> m_database;
};

QTEST_GUILESS_MAIN(TestMainViewProvider)
#include "tst_mainviewprovider.moc"
