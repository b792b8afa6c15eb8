#include "fileops/looks/silentplaces.h"
#include "tests/support/serverdatabase.h"
#include "tests/support/silentdisk.h"
#include "tests/support/trackingtest.h"

#include <QImage>

#include <algorithm>
#include <numeric>

/** Changes files behind the back of a database, and then looks what the check makes of it. */
class TestTracking : public TrackingTest
{
    Q_OBJECT

private slots:
    void initTestCase_data() { addBackEnds(); }
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void tells_data()
    {
        addColumns<QStringList, QStringList, QString>("deeds", "files", "news");
        const QString a = "a.txt|5|1000000000: t1"_s;
        const QString b = "b.txt|6|1000000000: t2"_s;
        const QString c = "c.txt|6|1000000000: t3"_s;
        addRow("nothing", QStringList(), QStringList{a, b, c}, "present 1 2 3"_s);
        addRow("touched by a second", QStringList{"time a.txt 1000000001"_s}, QStringList{a, b, c},
               "present 1 2 3"_s);
        addRow("touched", QStringList{"time a.txt 1000000002"_s},
               QStringList{"a.txt|5|1000000002: t1"_s, b, c}, "present 1 2 3, modified 1"_s);
        addRow("older", QStringList{"time a.txt 999999999"_s}, QStringList{"a.txt|5|999999999: t1"_s, b, c},
               "present 1 2 3, modified 1"_s);
        addRow("before 1970", QStringList{"time a.txt -1000000000"_s},
               QStringList{"a.txt|5|-1000000000: t1"_s, b, c}, "present 1 2 3, modified 1"_s);
        addRow("after 2038", QStringList{"time a.txt 5000000000"_s},
               QStringList{"a.txt|5|5000000000: t1"_s, b, c}, "present 1 2 3, modified 1"_s);
        addRow("edited", QStringList{"write a.txt apples"_s, "time a.txt 1000000000"_s},
               QStringList{"a.txt|6|1000000000: t1"_s, b, c}, "present 1 2 3, modified 1"_s);
        addRow("emptied", QStringList{"write a.txt"_s, "time a.txt 7"_s},
               QStringList{"a.txt|0|7: t1"_s, b, c}, "present 1 2 3, modified 1"_s);
        addRow("deleted", QStringList{"remove a.txt"_s}, QStringList{a, b, c}, "missing 1, present 2 3"_s);
        addRow("a folder in its place", QStringList{"remove a.txt"_s, "folder a.txt"_s}, QStringList{a, b, c},
               "missing 1, present 2 3"_s);
        addRow("replaced by a copy of another one", QStringList{"write a.txt banana"_s, "time a.txt 9"_s},
               QStringList{"b.txt|6|1000000000: t1,t2"_s, c}, "present 1 2 3, removed 1, modified"_s);
        addRow("two names swapped", QStringList{"swap a.txt b.txt"_s, "time a.txt 9"_s, "time b.txt 9"_s},
               QStringList{"a.txt|6|9: t1"_s, "b.txt|5|9: t2"_s, c}, "present 1 2 3, modified 1 2"_s);
        addRow("moved over another one", QStringList{"move b.txt a.txt"_s, "time a.txt 9"_s},
               QStringList{"a.txt|6|9: t1"_s, b, c}, "missing 2, present 1 3, modified 1"_s);
        addRow("two with the same new contents",
               QStringList{"write a.txt same"_s, "time a.txt 9"_s, "write b.txt same"_s, "time b.txt 9"_s},
               QStringList{"a.txt|4|9: t1"_s, "b.txt|4|9: t2"_s, c}, "present 1 2 3, modified 1 2"_s);
        addRow(
            "two with the contents of a third",
            QStringList{"write a.txt cherry"_s, "time a.txt 9"_s, "write b.txt cherry"_s, "time b.txt 9"_s},
            QStringList{"c.txt|6|1000000000: t1,t2,t3"_s}, "present 1 2 3, removed 1 2, modified"_s);
        addRow("of equal checksums only", QStringList{"write a.txt cherr"_s, "time a.txt 9"_s, "collide"_s},
               QStringList{"a.txt|5|9: t1"_s, b, c}, "present 1 2 3, modified 1"_s);
    }

    void tells()
    {
        QFETCH(QStringList, deeds);
        for (const QString &deed : qAsConst(deeds))
            perform(deed.section(QLatin1Char(' '), 0, 0), deed.section(QLatin1Char(' '), 1, 1),
                    deed.section(QLatin1Char(' '), 2));
        const QStringList before = idsInDatabase();
        provider().checkExternalFiles({1, 2, 3});
        m_fixture->wait();
        QTEST(tagged(), "files");
        QTEST(news(before), "news");
        // What has been told is settled.
        m_modified->clear();
        provider().checkExternalFiles({1, 2, 3});
        m_fixture->wait();
        QCOMPARE(m_modified->count(), 0);
        QVERIFY(m_fixture->errors.isEmpty());
    }

    void onlyMarks()
    {
        m_fixture->write("a.txt"_s, "edited");
        QVERIFY(QFile::remove(path("b.txt")));
        provider().checkExternalFiles({1, 2, 3}, true, true);
        m_fixture->wait();
        QCOMPARE(tagged().first(), "a.txt|5|1000000000: t1"_s);
        QCOMPARE(news(idsInDatabase()), "missing 2, present 1 3"_s);
    }

    void withoutDuplicateManagementACopyStays()
    {
        QSettings().setValue("PreferencesDialog/duplicateManagementEnabled"_s, false);
        m_fixture->write("a.txt"_s, "banana");
        setTime(path("a.txt"), 9);
        provider().checkExternalFiles({1, 2, 3});
        m_fixture->wait();
        QCOMPARE(tagged().first(), "a.txt|6|9: t1"_s);
        QCOMPARE(Sql::rows("SELECT count(DISTINCT data_checksum) FROM files"), QStringList{"2"_s});
    }

    void leavesItsDescriptionWhereThereIsNone()
    {
        Sql::run("UPDATE files SET file_description='of '||file_id WHERE file_id<3");
        for (const char *name : {"a.txt", "b.txt"}) {
            m_fixture->write(QLatin1String(name), "cherry");
            setTime(path(name), 9);
        }
        provider().checkExternalFiles({1, 2, 3});
        m_fixture->wait();
        const QString left = Sql::value("SELECT file_description FROM files");
        QVERIFY2(left == QLatin1String("of 1") || left == QLatin1String("of 2"), qPrintable(left));
    }

    void aCopyStaysWhereItsTagsCannotBeLeft()
    {
        m_fixture->write("a.txt"_s, "banana");
        setTime(path("a.txt"), 9);
        const QStringList before = tagged();
        QVERIFY(m_fixture->database().refuse("INSERT ON file_tag"_s));
        provider().checkExternalFiles({1, 2, 3});
        m_fixture->wait();
        QCOMPARE(tagged(), before);
    }

    void aLaterCheckTellsCopies_data()
    {
        const QString c = "c.txt|6|1000000000: t3"_s;
        addColumns<QByteArray, bool, bool, QStringList>("contents", "isLater", "isRestarted", "files");
        const QStringList both = {"a.txt|4|5000000000: t1"_s, "b.txt|4|5000000000: t2"_s, c};
        const QStringList one = {"a.txt|4|5000000000: t1,t2"_s, c};
        addRow("changed together", QByteArray("same"), false, false, both);
        addRow("changed together before a restart", QByteArray("same"), false, true, both);
        addRow("copied later", QByteArray("same"), true, false, one);
        addRow("copied after a restart", QByteArray("same"), true, true, one);
        addRow("emptied", QByteArray(), true, false,
               QStringList{"a.txt|0|5000000000: t1"_s, "b.txt|0|5000000000: t2"_s, c});
    }

    void aLaterCheckTellsCopies()
    {
        QFETCH(QByteArray, contents);
        QFETCH(bool, isLater);
        QFETCH(bool, isRestarted);
        if (isLater && isRestarted && !m_fixture->isLocal())
            QSKIP("When a server was written to before is not known.");
        const auto change = [&](const char *name) {
            m_fixture->write(QLatin1String(name), contents);
            setTime(path(name), 5000000000);
        };
        change("a.txt");
        if (!isLater)
            change("b.txt");
        provider().checkExternalFiles({1});
        m_fixture->wait();
        if (isRestarted)
            m_fixture->restart();
        // Times of files are coarser than those of clocks.
        const QDateTime checked = QDateTime::currentDateTime();
        const auto isNewer = [&] { return QFileInfo(path("b.txt")).metadataChangeTime() > checked; };
        if (isLater)
            QTRY_VERIFY((change("b.txt"), isNewer()));
        provider().checkExternalFiles({2});
        m_fixture->wait();
        QTEST(tagged(), "files");
    }

    void aCopyThatStaysBequeathsNothing()
    {
        m_fixture->write("a.txt"_s, "banana");
        setTime(path("a.txt"), 9);
        Sql::run("UPDATE files SET file_description='of a' WHERE file_id=1");
        QVERIFY(m_fixture->database().refuse("DELETE ON files"_s, "old.file_id=1"_s));
        provider().checkExternalFiles({1, 2, 3});
        m_fixture->wait();
        const QStringList before = {"a.txt|5|1000000000: t1"_s, "b.txt|6|1000000000: t2"_s,
                                    "c.txt|6|1000000000: t3"_s};
        QCOMPARE(tagged(), before);
        QCOMPARE(Sql::rows("SELECT file_id FROM files WHERE file_description='of a'"), QStringList{"1"_s});
        QVERIFY(m_modified->isEmpty());
    }

    void aFileThatFailsLeavesTheOthers()
    {
        for (const char *name : {"a.txt", "b.txt", "c.txt"})
            setTime(path(name), 9);
        QVERIFY(m_fixture->database().refuse("UPDATE ON files"_s, "new.file_id=2"_s));
        provider().checkExternalFiles({1, 2, 3});
        m_fixture->wait();
        QCOMPARE(tagged(), QStringList({"a.txt|5|9: t1"_s, "b.txt|6|1000000000: t2"_s, "c.txt|6|9: t3"_s}));
        QVERIFY(m_fixture->errors.isEmpty());
    }

    void looksAtNoOthers_data()
    {
        addColumns<QVector<qint64>, QString>("ids", "news");
        addRow("close together", QVector<qint64>{3, 1}, "present 1 3"_s);
        addRow("far apart", QVector<qint64>{20100, 1, 3}, "missing 20100, present 1 3"_s);
        addRow("unknown", QVector<qint64>{1, 99, 30000}, "present 1"_s);
    }

    void looksAtNoOthers()
    {
        QFETCH(QVector<qint64>, ids);
        fillWithMissing();
        provider().checkExternalFiles(ids);
        m_fixture->wait();
        QTEST(news(idsInDatabase()), "news");
    }

    void aDiskThatDoesNotAnswerHoldsNobody()
    {
        SilentDisk disk(m_fixture->path("silent"_s));
        if (!disk.isThere())
            QSKIP("Only root may mount.");
        Sql::run("UPDATE file_paths SET path='%1', rel_path='' WHERE path_id=1"_s.arg(disk.path("a.txt"_s)));
        const QByteArray path = QFile::encodeName(disk.path("b.txt"_s));
        // The one that is stuck gives way to the next one, and then it is known where it was.
        const auto getStuck = [&] {
            m_present->clear();
            provider().checkExternalFiles({1});
            static_cast<void>(QTest::qWaitFor([this] { return !provider().isBusy(); }, 1500));
            provider().checkExternalFiles({2});
            m_fixture->wait();
            return SilentPlaces::contain(path);
        };
        QTRY_VERIFY_WITH_TIMEOUT(getStuck(), 30000);
        QCOMPARE(news(idsInDatabase()), "present 2"_s);
        QVERIFY(!SilentPlaces::contain(QFile::encodeName(m_fixture->path("b.txt"_s))));
        // From then on its files are passed over, and nothing is said of them.
        m_present->clear();
        provider().checkExternalFiles({1, 2, 3});
        m_fixture->wait();
        QCOMPARE(news(idsInDatabase()), "present 2 3"_s);
        disk.unplug();
        QTRY_VERIFY(!SilentPlaces::contain(path));
        m_present->clear();
        provider().checkExternalFiles({1, 2, 3});
        m_fixture->wait();
        QCOMPARE(news(idsInDatabase()), "missing 1, present 2 3"_s);
    }

    void aDiskThatDoesNotAnswerHoldsNoEnd()
    {
        SilentDisk disk(m_fixture->path("silent"_s));
        if (!disk.isThere())
            QSKIP("Only root may mount.");
        Sql::run("UPDATE file_paths SET path='%1' WHERE path_id=1"_s.arg(disk.path("a.txt"_s)));
        provider().checkExternalFiles({1});
        QVERIFY(!QTest::qWaitFor([this] { return !provider().isBusy(); }, 50));
        QElapsedTimer passed;
        passed.start();
        m_fixture->restart();
        QVERIFY(passed.elapsed() < 2000);
    }

    void aDiskGoesAndComes()
    {
        const QString folder = m_fixture->path("disk"_s);
        const auto mount = [&folder] {
            return ::mount("none", QFile::encodeName(folder).constData(), "tmpfs", 0, "size=1m") == 0;
        };
        QVERIFY(QDir().mkpath(folder));
        if (!mount())
            QSKIP("Only root may mount.");
        Sql::run("UPDATE file_paths SET path='%1/a.txt', rel_path='' WHERE path_id=1"_s.arg(folder));
        QStringList told;
        for (const bool isMounted : {true, false, true}) {
            if (isMounted)
                setTime(m_fixture->write("disk/a.txt"_s, "apple"), 1000000000);
            m_present->clear();
            m_missing->clear();
            provider().checkExternalFiles({1});
            m_fixture->wait();
            told.append(news(idsInDatabase()));
            QVERIFY(isMounted ? ::umount(QFile::encodeName(folder).constData()) == 0 : mount());
        }
        QCOMPARE(told, QStringList({"present 1"_s, "missing 1"_s, "present 1"_s}));
    }

    void whatCannotBeReadIsLeftAsItIs()
    {
        // A regular file of another size, of which each reading fails.
        Sql::run("UPDATE file_paths SET path='/proc/self/mem', rel_path='' WHERE path_id=1");
        provider().checkExternalFiles({1, 2, 3});
        m_fixture->wait();
        QCOMPARE(tagged().first(), "a.txt|5|1000000000: t1"_s);
        QCOMPARE(news(idsInDatabase()), "present 1 2 3"_s);
    }

    void thumbnailsFollowContentsAlone()
    {
        QImage picture(40, 40, QImage::Format_RGB32);
        const auto paint = [&](const QColor &colour, qint64 time) {
            picture.fill(colour);
            QVERIFY(picture.save(path("p.png"), "PNG"));
            setTime(path("p.png"), time);
        };
        const auto thumbnail = [this] {
            provider().checkExternalFiles({4});
            m_fixture->wait();
            QSqlQuery query("SELECT thumbnail FROM thumbnails"_s);
            query.next();
            return QImage::fromData(query.value(0).toByteArray()).pixelColor(64, 64);
        };
        paint(Qt::red, 5);
        m_fixture->add({path("p.png")});
        QCOMPARE(thumbnail(), QColor(Qt::red));
        paint(Qt::blue, 7);
        QCOMPARE(thumbnail(), QColor(Qt::blue));
        // Only touched: what is stored stays.
        Sql::run("UPDATE thumbnails SET thumbnail=''");
        setTime(path("p.png"), 9);
        QVERIFY(!thumbnail().isValid());
        QCOMPARE(m_modified->count(), 2);
    }

    void theLaterCheckTakesThePlace()
    {
        const QVector<qint64> many = fillWithMissing();
        provider().checkExternalFiles(many);
        provider().checkExternalFiles({1, 2}, false);
        provider().checkExternalFiles({3});
        m_fixture->wait();
        // The first one came to nothing, or not to its end; the one between stays.
        QVERIFY(m_missing->count() < many.size() / 2000);
        QCOMPARE(m_present->count(), 2);
        QVERIFY(provider().endChecks() == false);
    }

    void whatIsLeftOfACheckTouchesNoOtherFile()
    {
        // The next file gets the id of the one that goes, while the check has yet to read that one.
        m_fixture->write("c.txt"_s, "cherries");
        const QString other = m_fixture->write("d.txt"_s, "date");
        provider().checkExternalFiles({3});
        provider().deleteFiles({3});
        m_fixture->add({other}, {3});
        QVERIFY(tagged().last().startsWith("d.txt|4|"_s));
    }

    void othersGetInBetween()
    {
        const QVector<qint64> many = fillWithMissing();
        QSignalSpy removed(&provider(), &FileOperationProvider::filesRemoved);
        int looked = -1;
        connect(&provider(), &FileOperationProvider::filesRemoved, this,
                [this, &looked] { looked = m_missing->count(); });
        QTimer::singleShot(0, this, [this] { provider().deleteFiles({3}); });
        provider().checkExternalFiles(many);
        m_fixture->wait();
        QCOMPARE(removed.count(), 1);
        QVERIFY(looked < many.size() / 2000);
        int missing = 0;
        for (const QList<QVariant> &news : qAsConst(*m_missing))
            missing += news.first().value<QVector<qint64>>().size();
        QCOMPARE(missing, many.size());
    }

private:
    /** External files without a file, enough for many slices. */
    QVector<qint64> fillWithMissing()
    {
        constexpr int count = 20000;
        Sql::run("BEGIN");
        Sql::fill("INSERT INTO file_paths SELECT i+100,'/nowhere/'||i,'nowhere/'||i FROM n", count);
        Sql::fill("INSERT INTO files SELECT i+100,'f'||i,'',1,0,0,'m'||i,1,i+100,0,0,0 FROM n", count);
        Sql::run("COMMIT");
        QVector<qint64> ids(count);
        std::iota(ids.begin(), ids.end(), 101);
        return ids;
    }

    void perform(const QString &verb, const QString &name, const QString &value)
    {
        const QString file = m_fixture->path(name);
        if (verb == QLatin1String("time"))
            setTime(file, value.toLongLong());
        else if (verb == QLatin1String("write"))
            m_fixture->write(name, value.toUtf8());
        else if (verb == QLatin1String("remove"))
            QVERIFY(QFile::remove(file));
        else if (verb == QLatin1String("folder"))
            QVERIFY(QDir().mkdir(file));
        else if (verb == QLatin1String("move"))
            QVERIFY(QFile::remove(m_fixture->path(value)) && QFile::rename(file, m_fixture->path(value)));
        else if (verb == QLatin1String("swap"))
            QVERIFY(QFile::rename(file, file + "x"_s) && QFile::rename(m_fixture->path(value), file) &&
                    QFile::rename(file + "x"_s, m_fixture->path(value)));
        else
            Sql::run("UPDATE files SET data_checksum=(SELECT data_checksum FROM files WHERE file_id=3)");
    }

    static QStringList idsInDatabase() { return Sql::rows("SELECT file_id FROM files ORDER BY file_id"); }

    /** Ascending, as a server answers in what order it likes. */
    static QString idsIn(const QString &word, QVector<qint64> ids)
    {
        std::sort(ids.begin(), ids.end());
        QString text = word;
        for (const qint64 id : ids)
            text += QLatin1Char(' ') + QString::number(id);
        return text;
    }

    QString news(const QStringList &before) const
    {
        QStringList parts;
        if (!m_missing->isEmpty())
            parts.append(idsIn("missing"_s, AddingFixture::idsOf(*m_missing)));
        if (!m_present->isEmpty())
            parts.append(idsIn("present"_s, AddingFixture::idsOf(*m_present)));
        QVector<qint64> removed;
        const QStringList after = idsInDatabase();
        for (const QString &id : before) {
            if (!after.contains(id))
                removed.append(id.toLongLong());
        }
        if (!removed.isEmpty())
            parts.append(idsIn("removed"_s, removed));
        if (!m_modified->isEmpty())
            parts.append(idsIn("modified"_s, AddingFixture::idsOf(*m_modified)));
        return parts.join(QLatin1String(", "));
    }
};

QTEST_MAIN(TestTracking)
#include "tst_tracking.moc"
