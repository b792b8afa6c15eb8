#include "app/messages.h"
#include "fileops/fileoperationprovider.h"
#include "tests/support/localmanager.h"
#include "tests/support/settingssandbox.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>

#include <sys/stat.h>

namespace {
QStringList warnings;

void keepWarnings(QtMsgType type, const QMessageLogContext &, const QString &text)
{
    if (type == QtWarningMsg || type == QtCriticalMsg)
        warnings.append(text);
}

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void write(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

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
    void init();
    void cleanup();

    void newDatabaseOpensClosesAndOpensAgain();
    void openingAMissingFileMakesNone();
    void versionCheck_data();
    void versionCheck();
    void versionCheckOfAPlaceWithoutAFile_data();
    void versionCheckOfAPlaceWithoutAFile();
    void versionCheckOfALockedFile_data();
    void versionCheckOfALockedFile();
    void writeProtectedFileOpensReadOnly();
    void tagNamesOfAClosedDatabase();
    void editOfABusyDatabaseWarnsAtOnce();
    void editThatCannotBeCommittedWarns();
    void reloadOfABusyDatabaseComesLater();
    void reloadEmptiesTheViewsFirst();
    void addedFileArrivesAndGoes();
    void closingInTheMiddleOfAnAddLeavesNothingHalf();
    void makingAnotherDatabaseLeavesTheWorkerAlone();
    void missingFilesAreToldWhenTheirStateChanges();
    void workerErrorHasTitleFirst();

private:
    void runOn(const QString &path, const QStringList &statements);

    SettingsSandbox m_settings;
    QStringList m_boxes;
    QMessageBox::StandardButton m_answer = QMessageBox::Ok;
};

void TestDatabaseManager::init()
{
    m_boxes.clear();
    warnings.clear();
    m_answer = QMessageBox::Ok;
    Messages::setResponder([this](const Messages::Box &box) {
        m_boxes.append(box.text);
        Messages::Answer answer;
        answer.button = m_answer;
        return answer;
    });
}

void TestDatabaseManager::cleanup()
{
    Messages::setResponder({});
}

void TestDatabaseManager::runOn(const QString &path, const QStringList &statements)
{
    OtherConnection connection(path);
    for (const QString &statement : statements)
        QVERIFY2(connection.run(statement), qPrintable(statement));
}

void TestDatabaseManager::newDatabaseOpensClosesAndOpensAgain()
{
    const QtMessageHandler before = qInstallMessageHandler(keepWarnings);
    {
        LocalManager manager;
        QVERIFY(!manager->isReadOnly());
        QCOMPARE(manager->dbVersion(), QStringLiteral("4.1.3"));
        QCOMPARE(manager->dbType(), 1);
        QCOMPARE(manager.value("PRAGMA page_size"), QStringLiteral("65536"));
        QCOMPARE(manager.value("PRAGMA journal_mode"), QStringLiteral("delete"));
        QCOMPARE(manager.value("SELECT count(*) FROM sqlite_master WHERE type='table'"),
                 QStringLiteral("21"));
        QCOMPARE(manager.value("SELECT count(*) FROM file_tag"), QStringLiteral("0"));
        const qint64 tagId = manager->addTag(QStringLiteral("kept"));
        manager.close();
        QVERIFY(QSqlDatabase::connectionNames().isEmpty());
        QVERIFY(manager.open());
        QCOMPARE(manager->tagName(tagId), QStringLiteral("kept"));
    }
    qInstallMessageHandler(before);
    QCOMPARE(warnings, QStringList());
    QVERIFY(QSqlDatabase::connectionNames().isEmpty());
    QVERIFY(m_boxes.isEmpty());
}

void TestDatabaseManager::openingAMissingFileMakesNone()
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("none.vrn"));
    SQLiteDBManager manager(Constants::sqliteDriver, path, {}, {}, {}, 0);
    QVERIFY(manager.openDB().isValid());
    QVERIFY(!QFile::exists(path));
    QVERIFY(manager.isReadOnly());
}

void TestDatabaseManager::versionCheck_data()
{
    QTest::addColumn<QStringList>("statements"); // run on a new database of ours
    QTest::addColumn<int>("keptBytes");          // -1 all of them
    QTest::addColumn<bool>("agrees");
    QTest::addColumn<bool>("opens");
    QTest::addColumn<QStringList>("boxes");
    QTest::addColumn<bool>("changes");

    const QString corrupted = QStringLiteral("The database could be corrupted please check it.");
    const QString unsupported = QStringLiteral("The database is not supported");
    const QString old = QStringLiteral("The database was created with an earlier version of Vorna.");
    const QStringList makeOld = {QStringLiteral("UPDATE vorna_version SET version='3.2.0'"),
                                 QStringLiteral("UPDATE scheme_version SET version='3.2.0'")};
    const QString probed = QStringLiteral("INSERT INTO file_tag VALUES(0,0)");
    const QString extra = QStringLiteral("ALTER TABLE files ADD COLUMN extra TEXT");

    QTest::newRow("current") << QStringList() << -1 << true << true << QStringList() << false;
    QTest::newRow("nothing in it") << QStringList() << 0 << true << false << QStringList{corrupted} << false;
    QTest::newRow("cut short") << QStringList() << 700 << true << false << QStringList{corrupted} << false;
    QTest::newRow("cut in the middle")
        << QStringList() << 100000 << true << false << QStringList{corrupted} << false;
    QTest::newRow("without versions") << QStringList{QStringLiteral("DROP TABLE vorna_version"),
                                                     QStringLiteral("DROP TABLE scheme_version")}
                                      << -1 << true << false << QStringList{corrupted} << false;
    QTest::newRow("unknown versions")
        << QStringList{QStringLiteral("UPDATE vorna_version SET version='strange'"),
                       QStringLiteral("UPDATE scheme_version SET version='strange'")}
        << -1 << true << false << QStringList{unsupported} << false;
    QTest::newRow("probe row there, so read-only")
        << QStringList{probed} << -1 << true << true << QStringList() << false;
    QTest::newRow("old, declined") << makeOld << -1 << false << false << QStringList{old} << false;
    QTest::newRow("old, agreed") << makeOld << -1 << true << true
                                 << QStringList{old, QStringLiteral("Database upgraded successfully.")}
                                 << true;
    QTest::newRow("old and read-only")
        << makeOld + QStringList{probed} << -1 << true << true << QStringList() << false;
    QTest::newRow("old, cannot be upgraded")
        << makeOld + QStringList{extra} << -1 << true << false
        << QStringList{old, QStringLiteral("Problem occurred while upgrading database. Probably you have no "
                                           "permission to perform this operation.")}
        << false;
}

void TestDatabaseManager::versionCheck()
{
    QFETCH(QStringList, statements);
    QFETCH(int, keptBytes);
    QFETCH(bool, agrees);
    QFETCH(bool, changes);
    LocalManager manager;
    manager.close();
    runOn(manager.path(), statements);
    if (keptBytes >= 0)
        QVERIFY(QFile::resize(manager.path(), keptBytes));
    const QByteArray before = contents(manager.path());
    m_answer = agrees ? QMessageBox::Ok : QMessageBox::Cancel;

    QTEST(check(manager.path()), "opens");
    QTEST(m_boxes, "boxes");
    QCOMPARE(contents(manager.path()) != before, changes);
    QVERIFY(QSqlDatabase::connectionNames().isEmpty());
    QCOMPARE(QDir(manager.folder()).entryList(QDir::Files), QStringList{QStringLiteral("test.vrn")});
}

void TestDatabaseManager::versionCheckOfAPlaceWithoutAFile_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<int>("boxes");
    for (const char *kind : {"nothing", "folder", "pipe"})
        QTest::newRow(kind) << QString::fromLatin1(kind) << 0;
    QTest::newRow("garbage") << QStringLiteral("garbage") << 1;
    QTest::newRow("another program's database") << QStringLiteral("foreign") << 1;
}

void TestDatabaseManager::versionCheckOfAPlaceWithoutAFile()
{
    QFETCH(QString, kind);
    QFETCH(int, boxes);
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("x.vrn"));
    if (kind == QLatin1String("folder"))
        QVERIFY(QDir().mkpath(path));
    else if (kind == QLatin1String("pipe"))
        QCOMPARE(mkfifo(QFile::encodeName(path).constData(), 0600), 0);
    else if (kind == QLatin1String("garbage"))
        write(path, QByteArray("no database at all ").repeated(5000));
    else if (kind == QLatin1String("foreign"))
        runOn(path, {QStringLiteral("CREATE TABLE notes (body TEXT)")});
    const bool isRegular = QFileInfo(path).isFile();
    const QByteArray before = isRegular ? contents(path) : QByteArray();
    const QStringList entries = QDir(folder.path()).entryList(QDir::AllEntries | QDir::System);

    QVERIFY(!check(path));
    QCOMPARE(m_boxes.size(), boxes);
    QCOMPARE(QDir(folder.path()).entryList(QDir::AllEntries | QDir::System), entries);
    if (isRegular)
        QCOMPARE(contents(path), before);
}

void TestDatabaseManager::versionCheckOfALockedFile_data()
{
    QTest::addColumn<QString>("lock");
    QTest::addColumn<bool>("opens");
    QTest::addColumn<int>("boxes");
    QTest::newRow("someone writes") << QStringLiteral("BEGIN IMMEDIATE") << true << 0;
    QTest::newRow("someone keeps it for himself") << QStringLiteral("BEGIN EXCLUSIVE") << false << 1;
}

void TestDatabaseManager::versionCheckOfALockedFile()
{
    QFETCH(QString, lock);
    LocalManager manager;
    manager.close();
    OtherConnection other(manager.path());
    QVERIFY(other.run(lock));
    QElapsedTimer timer;
    timer.start();
    QTEST(check(manager.path()), "opens");
    QVERIFY2(timer.elapsed() < 9000, "the window stood still");
    QFETCH(int, boxes);
    QCOMPARE(m_boxes.size(), boxes);
    QVERIFY(other.run(QStringLiteral("ROLLBACK")));
    QVERIFY(check(manager.path()));
}

void TestDatabaseManager::writeProtectedFileOpensReadOnly()
{
    LocalManager manager;
    QVERIFY(manager.run("INSERT INTO file_tag VALUES(0,0)"));
    manager.close();
    const QByteArray before = contents(manager.path());
    QVERIFY(manager.open());
    QSignalSpy errors(manager.get(), &DatabaseManger::errorOccured);
    QVERIFY(manager->isReadOnly());
    QVERIFY(errors.isEmpty());
    manager.close();
    QCOMPARE(contents(manager.path()), before);
}

void TestDatabaseManager::tagNamesOfAClosedDatabase()
{
    LocalManager manager;
    manager->addTag(QStringLiteral("a'b"));
    manager->addTag(QStringLiteral("c%1d"));
    const DBDetails details = manager->details();
    manager.close();
    QCOMPARE(DatabaseManger::tagNames(details), QStringList({QStringLiteral("a'b"), QStringLiteral("c%1d")}));
    const DBDetails none = DBDetails::local(manager.folder() + QStringLiteral("/none.vrn"));
    QVERIFY(DatabaseManger::tagNames(none).isEmpty());
    QVERIFY(!QFile::exists(none.databaseName()));
}

void TestDatabaseManager::editOfABusyDatabaseWarnsAtOnce()
{
    LocalManager manager;
    QSignalSpy temporary(manager.get(), &DatabaseManger::showTempWarning);
    QSignalSpy errors(manager.get(), &DatabaseManger::errorOccured);
    OtherConnection other(manager.path());
    QVERIFY(other.run(QStringLiteral("BEGIN IMMEDIATE")));
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(manager->addTag(QStringLiteral("later")), qint64(0));
    QVERIFY(timer.elapsed() < 2000);
    QCOMPARE(temporary.size(), 1);
    QCOMPARE(temporary.first().at(1).toString(), QStringLiteral("The database is busy. Please try again."));
    QVERIFY(errors.isEmpty());
    QVERIFY(!manager->hasTagNamed(QStringLiteral("later")));
    QVERIFY(other.run(QStringLiteral("ROLLBACK")));
    QVERIFY(manager->addTag(QStringLiteral("later")) > 0);
}

void TestDatabaseManager::editThatCannotBeCommittedWarns()
{
    LocalManager manager;
    manager.addFiles(1);
    const qint64 tagId = manager->addTag(QStringLiteral("paper"));
    QSignalSpy temporary(manager.get(), &DatabaseManger::showTempWarning);
    QSignalSpy errors(manager.get(), &DatabaseManger::errorOccured);
    OtherConnection other(manager.path());
    {
        // A reader in the middle of its rows lets others write, but not commit.
        QSqlQuery reader(QSqlDatabase::database(QStringLiteral("other")));
        QVERIFY(reader.exec(QStringLiteral("SELECT tag_id FROM tags UNION ALL SELECT file_id FROM files")));
        QVERIFY(!manager->linkTags({1}, {tagId}));
    }
    QCOMPARE(temporary.size(), 1);
    QVERIFY(errors.isEmpty());
    QCOMPARE(manager.value("SELECT count(*) FROM file_tag"), QStringLiteral("0"));
    QVERIFY(manager->linkTags({1}, {tagId}));
    QCOMPARE(manager->file(1)->tags(), QVector<qint64>{tagId});
}

void TestDatabaseManager::reloadOfABusyDatabaseComesLater()
{
    LocalManager manager;
    QSignalSpy temporary(manager.get(), &DatabaseManger::showTempWarning);
    OtherConnection other(manager.path());
    QVERIFY(other.run(QStringLiteral("INSERT INTO tags VALUES(7,'theirs','',0,NULL)")));
    QVERIFY(other.run(QStringLiteral("BEGIN EXCLUSIVE")));
    manager->updateTags({7});
    QVERIFY(!manager->hasTag(7));
    QVERIFY(other.run(QStringLiteral("ROLLBACK")));
    QTRY_COMPARE(manager->tagName(7), QStringLiteral("theirs"));
    QVERIFY(temporary.isEmpty());
}

void TestDatabaseManager::reloadEmptiesTheViewsFirst()
{
    LocalManager manager;
    manager.addFiles(3);
    QVector<int> sizes;
    connect(manager.get(), &DatabaseManger::filesLoaded, this,
            [&sizes](const Map<qint64, File *> &files) { sizes.append(files.size()); });
    QSignalSpy begin(manager.get(), &DatabaseManger::aboutToReloadAllData);
    QSignalSpy end(manager.get(), &DatabaseManger::allDataReloaded);
    manager->reloadAllData();
    QCOMPARE(sizes, QVector<int>({0, 3}));
    QCOMPARE(begin.size(), 1);
    QCOMPARE(end.size(), 1);
}

void TestDatabaseManager::addedFileArrivesAndGoes()
{
    LocalManager manager;
    const qint64 tagId = manager->addTag(QStringLiteral("paper"));
    const QString path = manager.folder() + QStringLiteral("/it's 100%1 \"odd\".txt");
    write(path, "some text");
    QSignalSpy finished(manager.get(), &DatabaseManger::finishedAddingFiles);
    manager->addFiles({path}, {tagId}, false, 0);
    QTRY_COMPARE(manager->files().size(), 1);
    QTRY_COMPARE(finished.size(), 1);
    const File *file = *manager->files().begin();
    QCOMPARE(file->name(), QFileInfo(path).fileName());
    QCOMPARE(file->path(), path);
    QCOMPARE(file->tags(), QVector<qint64>{tagId});

    QSignalSpy removed(manager.get(), &DatabaseManger::filesRemoved);
    const qint64 fileId = file->id();
    manager->deleteFiles({fileId});
    QTRY_COMPARE(removed.size(), 1);
    QVERIFY(!manager->file(fileId));
    QCOMPARE(manager.value("SELECT (SELECT count(*) FROM files)+(SELECT count(*) FROM file_tag)"
                           "+(SELECT count(*) FROM file_paths)"),
             QStringLiteral("0"));
    QVERIFY(QFile::exists(path));
}

void TestDatabaseManager::closingInTheMiddleOfAnAddLeavesNothingHalf()
{
    LocalManager manager;
    QStringList paths;
    for (int i = 0; i < 400; ++i) {
        paths.append(manager.folder() + QStringLiteral("/file%1.txt").arg(i));
        write(paths.last(), QByteArray::number(i));
    }
    QSignalSpy progress(manager.get(), &DatabaseManger::addingFilesProgress);
    manager->addFiles(paths, {}, false, 0);
    QTRY_VERIFY(!progress.isEmpty());
    manager.close();
    QVERIFY(QSqlDatabase::connectionNames().isEmpty());
    QVERIFY(manager.open());
    QCOMPARE(manager.value("PRAGMA integrity_check"), QStringLiteral("ok"));
    // The operation went through before the stop, or it left nothing.
    const int files = manager->files().size();
    QVERIFY(files == 0 || files == paths.size());
    QCOMPARE(manager.value("SELECT count(*) FROM file_paths"), QString::number(files));
}

void TestDatabaseManager::makingAnotherDatabaseLeavesTheWorkerAlone()
{
    LocalManager manager;
    QStringList paths;
    for (int i = 0; i < 400; ++i) {
        paths.append(manager.folder() + QStringLiteral("/file%1.txt").arg(i));
        write(paths.last(), QByteArray::number(i));
    }
    QSignalSpy progress(manager.get(), &DatabaseManger::addingFilesProgress);
    manager->addFiles(paths, {}, false, 0);
    QTRY_VERIFY(!progress.isEmpty());
    SQLiteDBManager(Constants::sqliteDriver, manager.folder() + QStringLiteral("/other.vrn"), {}, {}, {}, 0)
        .createDatabase();
    QTRY_VERIFY(!manager->isBusy());
    QTRY_COMPARE(manager->files().size(), paths.size());
}

void TestDatabaseManager::missingFilesAreToldWhenTheirStateChanges()
{
    LocalManager manager;
    manager.addFiles(3);
    QSignalSpy changed(manager.get(), &DatabaseManger::updateMissedFiles);
    auto *worker = manager->findChild<FileOperationProvider *>();
    using Ids = QVector<qint64>;
    emit worker->noLongerPresent({1, 2, 99});
    emit worker->noLongerPresent({2});
    emit worker->present({2, 3});
    emit worker->present({3});
    QCOMPARE(changed.size(), 2);
    QCOMPARE(changed.at(0).first().value<Ids>(), Ids({1, 2}));
    QCOMPARE(changed.at(1).first().value<Ids>(), Ids({2}));
    QVERIFY(manager->isMissing(1));
    QVERIFY(!manager->isMissing(2));
    QCOMPARE(manager->missingFiles(), QSet<qint64>{1});
}

void TestDatabaseManager::workerErrorHasTitleFirst()
{
    LocalManager manager;
    QSignalSpy errors(manager.get(), &DatabaseManger::error);
    auto *worker = manager->findChild<FileOperationProvider *>();
    emit worker->error(QStringLiteral("text"), QStringLiteral("title"));
    QCOMPARE(errors.size(), 1);
    QCOMPARE(errors.first().first().toString(), QStringLiteral("title"));
}

QTEST_MAIN(TestDatabaseManager)
#include "tst_databasemanager.moc"
