#include "tests/support/serverdatabase.h"
#include "tests/support/trackingtest.h"

/** Gives missing files the places where they have turned up, asked for and by an add. */
class TestLocating : public TrackingTest
{
    Q_OBJECT

private slots:
    void initTestCase_data() { addBackEnds(); }
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void locatesFiles_data()
    {
        addColumns<QStringList, QStringList, QString, QStringList>("places", "codes", "refused", "names");
        const QStringList old = {"a.txt"_s, "b.txt"_s, "c.txt"_s};
        addRow("both", QStringList{"x/new.txt"_s, "x/b.txt"_s}, QStringList(), QString(),
               QStringList{"new.txt"_s, "b.txt"_s, "c.txt"_s});
        addRow("one is not there", QStringList{"x/gone.txt"_s, "x/new.txt"_s}, QStringList(), QString(),
               QStringList{"a.txt"_s, "new.txt"_s, "c.txt"_s});
        addRow("one is another file by now", QStringList{"x/new.txt"_s, "x/b.txt"_s},
               QStringList{"ZZZZ999"_s, QString()}, QString(), old);
        addRow("one is another record's", QStringList{"c.txt"_s, "x/b.txt"_s}, QStringList(), QString(), old);
        addRow("one is refused", QStringList{"x/new.txt"_s, "x/b.txt"_s}, QStringList(), "new.file_id=1"_s,
               old);
    }

    void locatesFiles()
    {
        QFETCH(QStringList, places);
        QFETCH(QStringList, codes);
        QFETCH(QString, refused);
        m_fixture->write("x/new.txt"_s, "melon");
        m_fixture->write("x/b.txt"_s, "banana");
        if (!refused.isEmpty())
            QVERIFY(m_fixture->database().refuse("UPDATE ON files"_s, refused));
        for (QString &place : places)
            place = m_fixture->path(place);
        provider().locateFiles({1, 2}, places, codes);
        m_fixture->wait();
        QTEST(Sql::rows("SELECT file_name FROM files ORDER BY file_id"), "names");
        const QStringList paths = Sql::rows("SELECT path FROM file_paths ORDER BY path_id");
        const bool isFirstMoved = codes.isEmpty() && refused.isEmpty() && QFile::exists(places.first()) &&
                                  places.first() != path("c.txt");
        QCOMPARE(paths.first(), isFirstMoved ? places.first() : path("a.txt"));
        QCOMPARE(paths.at(1), places.at(1));
    }

    void anAddedFileTakesTheMissingPlace_data()
    {
        addColumns<QString, QString, QByteArray, QStringList, bool>("gone", "added", "contents", "files",
                                                                    "isFilled");
        const QString a = "a.txt|5|1000000000: t1"_s;
        const QString b = "b.txt|6|1000000000: t2"_s;
        const QString c = "c.txt|6|1000000000: t3"_s;
        addRow("moved and renamed", "a.txt"_s, "new.txt"_s, QByteArray("apple"),
               QStringList{"new.txt|5|9: t1,t3"_s, b, c}, true);
        addRow("still in its place", QString(), "new.txt"_s, QByteArray("apple"),
               QStringList{"a.txt|5|1000000000: t1,t3"_s, b, c}, false);
        addRow("of other contents", "a.txt"_s, "new.txt"_s, QByteArray("apricot"),
               QStringList{a, b, c, "new.txt|7|9: t3"_s}, false);
        // Others have its size, so that its fingerprint alone is no proof.
        addRow("one of many, moved and renamed", "b.txt"_s, "new.txt"_s, QByteArray("banana"),
               QStringList{a, "b.txt|6|1000000000: t2,t3"_s, c}, false);
        addRow("one of many, moved", "b.txt"_s, "moved/b.txt"_s, QByteArray("banana"),
               QStringList{a, "b.txt|6|9: t2,t3"_s, c}, true);
    }

    void anAddedFileTakesTheMissingPlace()
    {
        QFETCH(QString, gone);
        QFETCH(QString, added);
        QFETCH(QByteArray, contents);
        QFETCH(bool, isFilled);
        if (!gone.isEmpty())
            QVERIFY(QFile::remove(m_fixture->path(gone)));
        added = m_fixture->write(added, contents);
        setTime(added, 9);
        m_fixture->add({added}, {3});
        QTEST(tagged(), "files");
        const QVector<DuplicateMatch> &matches = m_fixture->duplicates().contentMatches;
        QCOMPARE(!matches.isEmpty() && matches.first().fillsMissingPlace, isFilled);
        QCOMPARE(Sql::rows("SELECT path FROM file_paths WHERE path_id<4").contains(added), isFilled);
        QCOMPARE(m_present->count(), isFilled ? 1 : 0);
    }

    void aCopyIntoTheDatabaseBringsAMissingFileIn()
    {
        QVERIFY(QFile::remove(path("a.txt")));
        QSettings().setValue("MainWindow/linkToFiles"_s, false);
        m_fixture->add({m_fixture->write("new.txt"_s, "apple")});
        QCOMPARE(Sql::rows("SELECT internal, file_name FROM files WHERE file_id=1"),
                 QStringList{"1|new.txt"_s});
        QCOMPARE(Sql::count("files"_s), 3);
        QVERIFY(m_fixture->errors.isEmpty());
    }
};

QTEST_MAIN(TestLocating)
#include "tst_locating.moc"
