#include "core/providers/mainviewprovider.h"
#include "tests/support/serverdatabase.h"

#include <numeric>

using Ids = QVector<qint64>;

/** Loading and changing file records against real databases. */
class TestMainViewProvider : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase_data() { addBackEnds(); }
    void init()
    {
        m_database = makeTestDatabase();
        m_files = std::make_unique<MainViewProvider>(m_database->constructor());
    }
    void cleanup()
    {
        m_files.reset();
        m_database.reset();
    }

    void loadedFileRows()
    {
        QVERIFY(m_database->addFiles(3) && m_database->addTags(2));
        QVERIFY(m_database->run("INSERT INTO file_tag VALUES (1,1),(1,2),(3,2)"));
        QVERIFY(m_database->run("INSERT INTO file_paths VALUES (1,'not mine','x'),(2,'/a','a')"));
        QStringList seen;
        connect(m_files.get(), &MainViewProvider::filesUpdated, this, [&seen](bool, const TableData &table) {
            for (const TableRowData *row : table) {
                QStringList values;
                for (const char *column : {"file_id", "tag_id", "file_name", "path"})
                    values.append(row->value(QLatin1String(column)).toString());
                seen.append(values.join(QLatin1Char('|')));
            }
        });
        m_files->loadFiles({3, 1, 2, 99});
        QCOMPARE(seen, QStringList({"1|1|f1|"_s, "1|2||"_s, "2|0|f2|/a"_s, "3|2|f3|"_s}));
        // An internal file has no path: 1 is its block.
        m_files->updateFilePath(1, "path"_s, "/lost"_s);
        m_files->updateFilePath(2, "path"_s, "/new"_s);
        QCOMPARE(m_database->value("SELECT path FROM file_paths ORDER BY path_id"), "not mine\n/new"_s);
    }

    void manyFilesComeInPieces()
    {
        QVERIFY(m_database->addFiles(11000) && m_database->addTags(3));
        QVERIFY(m_database->run("INSERT INTO file_tag SELECT file_id,tag_id FROM files CROSS JOIN tags"));
        QVector<int> sizes;
        QMap<qint64, int> rowsOfFile;
        const auto take = [&](bool ok, const TableData &table) {
            sizes.append(ok ? table.size() : -1);
            for (const TableRowData *row : table)
                ++rowsOfFile[row->value("file_id"_s).toLongLong()];
        };
        connect(m_files.get(), &MainViewProvider::gotAllFilesInfo, this, take);
        m_files->loadAllFiles();
        QVERIFY(sizes.size() > 2);
        QCOMPARE(sizes.indexOf(0), sizes.size() - 1);
        QCOMPARE(rowsOfFile.values(), QVector<int>(11000, 3).toList());

        sizes.clear();
        rowsOfFile.clear();
        connect(m_files.get(), &MainViewProvider::filesUpdated, this, [&](bool ok, const TableData &table) {
            take(ok, table);
            // Whole files, and a receiver may use the connection.
            QCOMPARE(rowsOfFile.values(), QVector<int>(rowsOfFile.size(), 3).toList());
            QVERIFY(m_database->run("UPDATE files SET load_id=2 WHERE file_id=1"));
        });
        m_files->loadFiles(firstIds(11000));
        QVERIFY(sizes.size() > 1);
        QCOMPARE(rowsOfFile.size(), 11000);

        sizes.clear();
        m_database->close();
        m_files->loadAllFiles();
        QCOMPARE(sizes, QVector<int>({-1}));
    }

    void productOfFilesAndTags()
    {
        QVERIFY(m_database->addFiles(3) && m_database->addTags(3));
        QVERIFY(m_database->run("INSERT INTO file_tag VALUES (1,1),(2,3)"));
        const ErrorCount errors(*m_files);
        QSignalSpy updates(m_files.get(), &MainViewProvider::filesUpdated);
        const char *const links = "SELECT file_id*10+tag_id FROM file_tag ORDER BY 1";
        QVERIFY(m_files->linkTags({1, 2, 2, 77}, {1, 3, 1, 88}));
        QCOMPARE(m_database->value(links), "11\n13\n21\n23"_s);
        QCOMPARE(updates.count(), 1);
        QVERIFY(m_files->linkTags({3}, {1, 2}) && m_files->unlinkTags({2, 3}, {1, 88}));
        QCOMPARE(m_database->value(links), "11\n13\n23\n32"_s);
        QCOMPARE(errors.count(), 0);
    }

    void linkingIsAllOrNothing()
    {
        QVERIFY(m_database->addFiles(12000) && m_database->addTags(2));
        // Fails behind the first piece of ids.
        QVERIFY(m_database->refuse("INSERT ON file_tag"_s, "new.file_id=11999"_s));
        const ErrorCount errors(*m_files);
        QSignalSpy updates(m_files.get(), &MainViewProvider::filesUpdated);
        QVERIFY(!m_files->linkTags(firstIds(12000), {1, 2}));
        QCOMPARE(m_database->count("file_tag"_s), 0);
        QCOMPARE(errors.count(), 1);
        QCOMPARE(updates.count(), 0);
        QVERIFY(m_database->permit("file_tag"_s) && m_files->linkTags(firstIds(12000), {1, 2}));
        QCOMPARE(m_database->count("file_tag"_s), 24000);
    }

private:
    static Ids firstIds(int count)
    {
        Ids ids(count);
        std::iota(ids.begin(), ids.end(), 1);
        return ids;
    }

    std::unique_ptr<TestDatabase> m_database;
    std::unique_ptr<MainViewProvider> m_files;
};

QTEST_GUILESS_MAIN(TestMainViewProvider)
#include "tst_mainviewprovider.moc"
