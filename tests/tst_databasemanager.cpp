#include "app/messages.h"
#include "fileops/fileoperationprovider.h"
#include "tests/support/localmanager.h"

#include <sys/stat.h>

namespace {
constexpr int addedFiles = 400;
bool check(const QString &path)
{
    return DatabaseManger::checkDatabaseVersion(Constants::sqliteDriver, path, {}, {}, {}, 0);
}
} // namespace

/** A local database from its making to its closing, and what is no database of ours. */
class TestDatabaseManager : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_boxes.clear();
        m_answer = QMessageBox::Ok;
        Messages::setResponder([this](const Messages::Box &box) {
            m_boxes.append(box.text);
            Messages::Answer answer;
            answer.button = m_answer;
            return answer;
        });
    }

    void cleanup() { Messages::setResponder({}); }

    void versionCheck_data()
    {
        // What is run on a new database of ours; files that are no such database meet the window's tests.
        addColumns<QStringList, bool, bool, QStringList, bool>("statements", "agrees", "opens", "boxes",
                                                               "changes");

        const QString corrupted = "The database could be corrupted please check it."_s;
        const QString old = "The database was created with an earlier version of Vorna."_s;
        const QStringList makeOld = {"UPDATE vorna_version SET version='3.2.0'"_s,
                                     "UPDATE scheme_version SET version='3.2.0'"_s};
        const QString probed = "INSERT INTO file_tag VALUES(0,0)"_s;
        const QString extra = "ALTER TABLE files ADD COLUMN extra TEXT"_s;

        addRow("current", QStringList(), true, true, QStringList(), false);
        addRow("without versions", QStringList{"DROP TABLE vorna_version"_s, "DROP TABLE scheme_version"_s},
               true, false, QStringList{corrupted}, false);
        addRow("probe row there, so read-only", QStringList{probed}, true, true, QStringList(), false);
        addRow("old, agreed", makeOld, true, true, QStringList{old, "Database upgraded successfully."_s},
               true);
        addRow("old and read-only", makeOld + QStringList{probed}, true, true, QStringList(), false);
        addRow("old, cannot be upgraded", makeOld + QStringList{extra}, true, false,
               QStringList{old, "Problem occurred while upgrading database. Probably you have no "
                                "permission to perform this operation."_s},
               false);
    }

    void versionCheck()
    {
        QFETCH(QStringList, statements);
        QFETCH(bool, agrees);
        LocalManager manager;
        manager.close();
        runOn(manager.path(), statements);
        const QByteArray before = TestFolder::read(manager.path());
        m_answer = agrees ? QMessageBox::Ok : QMessageBox::Cancel;

        QTEST(check(manager.path()), "opens");
        QTEST(m_boxes, "boxes");
        QTEST(TestFolder::read(manager.path()) != before, "changes");
        QVERIFY(QSqlDatabase::connectionNames().isEmpty());
        QCOMPARE(QDir(manager.folder()).entryList(QDir::Files), QStringList{"test.vrn"_s});
    }

    void tagNamesOfAClosedDatabase()
    {
        LocalManager manager;
        manager->addTag("a'b"_s);
        manager->addTag("c%1d"_s);
        const DBDetails details = manager->details();
        manager.close();
        QCOMPARE(DatabaseManger::tagNames(details), QStringList({"a'b"_s, "c%1d"_s}));
        const DBDetails none = DBDetails::local(manager.folder() + "/none.vrn"_s);
        QVERIFY(DatabaseManger::tagNames(none).isEmpty());
        QVERIFY(!QFile::exists(none.databaseName()));
    }

    void editOfABusyDatabaseWarnsAtOnce()
    {
        LocalManager manager;
        QSignalSpy temporary(manager.get(), &DatabaseManger::showTempWarning);
        QSignalSpy errors(manager.get(), &DatabaseManger::errorOccured);
        OtherConnection other(manager.path());
        QVERIFY(other.run("BEGIN IMMEDIATE"_s));
        QElapsedTimer timer;
        timer.start();
        QCOMPARE(manager->addTag("later"_s), qint64(0));
        QVERIFY(timer.elapsed() < 2000);
        QCOMPARE(temporary.size(), 1);
        QCOMPARE(temporary.first().at(1).toString(), "The database is busy. Please try again."_s);
        QVERIFY(errors.isEmpty());
        QVERIFY(!manager->hasTagNamed("later"_s));
        QVERIFY(other.run("ROLLBACK"_s));
        QVERIFY(manager->addTag("later"_s) > 0);
    }

    void editThatCannotBeCommittedWarns()
    {
        LocalManager manager;
        manager.addFiles(1);
        const qint64 tagId = manager->addTag("paper"_s);
        QSignalSpy temporary(manager.get(), &DatabaseManger::showTempWarning);
        QSignalSpy errors(manager.get(), &DatabaseManger::errorOccured);
        OtherConnection other(manager.path());
        {
            // A reader in the middle of its rows lets others write, but not commit.
            QSqlQuery reader(QSqlDatabase::database("other"_s));
            QVERIFY(reader.exec("SELECT tag_id FROM tags UNION ALL SELECT file_id FROM files"_s));
            QVERIFY(!manager->linkTags({1}, {tagId}));
        }
        QCOMPARE(temporary.size(), 1);
        QVERIFY(errors.isEmpty());
        QCOMPARE(manager.value("SELECT count(*) FROM file_tag"), "0"_s);
        QVERIFY(manager->linkTags({1}, {tagId}));
        QCOMPARE(manager->file(1)->tags(), QVector<qint64>{tagId});
    }

    void reloadOfABusyDatabaseComesLater()
    {
        LocalManager manager;
        QSignalSpy temporary(manager.get(), &DatabaseManger::showTempWarning);
        OtherConnection other(manager.path());
        QVERIFY(other.run("INSERT INTO tags VALUES(7,'theirs','',0,NULL)"_s));
        manager.addFiles(3);
        QSignalSpy begin(manager.get(), &DatabaseManger::aboutToReloadAllData);
        QVERIFY(other.run("BEGIN EXCLUSIVE"_s));
        manager->updateTags({7});
        manager->reloadAllData();
        QVERIFY(!manager->hasTag(7));
        QCOMPARE(manager->files().size(), 3);
        QVERIFY(other.run("ROLLBACK"_s));
        QTRY_COMPARE(manager->tagName(7), "theirs"_s);
        QTRY_COMPARE(begin.size(), 1);
        QCOMPARE(manager->files().size(), 3);
        QVERIFY(temporary.isEmpty());
    }

    void closingInTheMiddleOfAnAddLeavesNothingHalf()
    {
        LocalManager manager;
        startAdding(manager);
        manager.close();
        QVERIFY(QSqlDatabase::connectionNames().isEmpty());
        QVERIFY(manager.open());
        QCOMPARE(manager.value("PRAGMA integrity_check"), "ok"_s);
        // The operation went through before the stop, or it left nothing.
        const int files = manager->files().size();
        QVERIFY(files == 0 || files == addedFiles);
        QCOMPARE(manager.value("SELECT count(*) FROM file_paths"), QString::number(files));
    }

    void makingAnotherDatabaseLeavesTheWorkerAlone()
    {
        LocalManager manager;
        startAdding(manager);
        SQLiteDBManager(Constants::sqliteDriver, manager.folder() + "/other.vrn"_s, {}, {}, {}, 0)
            .createDatabase();
        QTRY_VERIFY(!manager->isBusy());
        QTRY_COMPARE(manager->files().size(), addedFiles);
    }

private:
    /** Adds many files; at the return it has begun. */
    static void startAdding(LocalManager &manager)
    {
        QStringList paths;
        for (int i = 0; i < addedFiles; ++i)
            paths.append(manager.write("file%1.txt"_s.arg(i), QByteArray::number(i)));
        QSignalSpy progress(manager.get(), &DatabaseManger::addingFilesProgress);
        manager->addFiles(paths, {}, false, 0);
        QTRY_VERIFY(!progress.isEmpty());
    }

    void runOn(const QString &path, const QStringList &statements)
    {
        OtherConnection connection(path);
        for (const QString &statement : statements)
            QVERIFY2(connection.run(statement), qPrintable(statement));
    }

    SettingsSandbox m_settings;
    QStringList m_boxes;
    QMessageBox::StandardButton m_answer = QMessageBox::Ok;
};

QTEST_MAIN(TestDatabaseManager)
#include "tst_databasemanager.moc"
