#include "app/messages/filedialogs.h"
#include "app/settings/trackingsettings.h"
#include "core/controllers/filelocation.h"
#include "core/records/file.h"
#include "models/contents/contentsmodel.h"
#include "tests/support/dialoganswers.h"
#include "tests/support/filesviewtest.h"
#include "tests/support/silentdisk.h"
#include "ui/dialogs/filelocationdialog.h"
#include "ui/dialogs/filemodificationdialog.h"
#include "ui/dialogs/modificationnotice.h"

#include <QDialogButtonBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTableView>
#include <QTableWidget>

namespace {
/** Answers each dialog of a class that comes up, until it is gone. */
template <class Dialog>
class OnDialog
{
public:
    explicit OnDialog(const std::function<void(Dialog &)> &act)
    {
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this, act] {
            Dialog *dialog = shown();
            // Keys reach it once it is active, which comes later than its sight.
            if (!dialog || m_isActing || !dialog->isActiveWindow())
                return;
            m_isActing = true;
            ++count;
            act(*dialog);
            m_isActing = false;
        });
        m_timer.start(5);
    }

    static Dialog *shown()
    {
        for (QWidget *window : QApplication::topLevelWidgets()) {
            auto *dialog = qobject_cast<Dialog *>(window);
            if (dialog && dialog->isVisible())
                return dialog;
        }
        return nullptr;
    }

    int count = 0;

private:
    QTimer m_timer;
    bool m_isActing = false;
};

QStringList texts(const QListWidget &list)
{
    QStringList lines;
    for (int row = 0; row < list.count(); ++row)
        lines.append(QFileInfo(list.item(row)->text()).fileName());
    return lines;
}

QStringList names(const QTableView &table)
{
    QStringList lines;
    for (int row = 0; row < table.model()->rowCount(); ++row)
        lines.append(table.model()->index(row, 1).data().toString());
    return lines;
}
} // namespace

/** Real files that are moved, changed and removed behind the window's back. */
class TestMissingFiles : public FilesViewTest
{
    Q_OBJECT

private slots:
    void init()
    {
        openView();
        m_ids = addKinds("EEE"_s);
        TrackingSettings::setAdviseOfModifiedFiles(false);
        settle();
    }
    void cleanup()
    {
        FileDialogs::setResponder({});
        closeView();
    }

    void marksFollowTheSelection()
    {
        QVERIFY(remove("1.txt"));
        QVERIFY(!isMissing(1));
        QSignalSpy news(m_fixture->manager(), &DatabaseManger::updateMissedFiles);
        lookAtAll();
        QVERIFY(isMissing(1));
        QCOMPARE(news.count(), 1);
        QCOMPARE(news.first().first().value<QVector<qint64>>(), QVector<qint64>{m_ids.at(1)});
        QVERIFY(locateAction()->isEnabled());
        // Nothing has changed since: no news.
        lookAtAll();
        QCOMPARE(news.count(), 1);
        m_fixture->write("1.txt"_s, "1.txt");
        m_fixture->mainView().showSpecialNode(AllInternalFiles);
        settle();
        QVERIFY(isMissing(1));
        lookAtAll();
        QVERIFY(!isMissing(1));
        QVERIFY(!locateAction()->isEnabled());
    }

    void pausesWhileAPictureIsSaved()
    {
        MainViewController &view = m_fixture->mainView();
        view.pauseChecking();
        view.pauseChecking();
        QVERIFY(remove("1.txt"));
        lookAtAll();
        view.resumeChecking();
        settle();
        QVERIFY(!isMissing(1));
        view.resumeChecking();
        settle();
        QVERIFY(isMissing(1));
    }

    void pauseHoldsASingleLookToo()
    {
        MainViewController &view = m_fixture->mainView();
        QVERIFY(remove("1.txt"));
        QVERIFY(remove("2.txt"));
        openFirst(1);
        view.pauseChecking();
        view.checkPresence(m_ids.at(2));
        settle();
        QVERIFY(!isMissing(1) && !isMissing(2));
        view.resumeChecking();
        settle();
        QVERIFY(isMissing(1) && isMissing(2));
        m_fixture->takeBoxes();
    }

    void openingLooksForTheFile()
    {
        QVERIFY(remove("1.txt"));
        openFirst(1);
        QCOMPARE(
            m_fixture->takeBoxes(),
            QStringList{"File No Longer Present: This file is no longer present in its original path. It "
                        "may have been moved, deleted or renamed."_s});
        settle();
        QVERIFY(isMissing(1));
    }

    void aDatabaseMovesWithItsFiles_data()
    {
        addColumns<QString, bool, QString, QString>("recorded", "isReadOnly", "path", "relPath");
        addRow("moved together", "/nowhere/1.txt|1.txt"_s, false, "DIR/1.txt"_s, "1.txt"_s);
        addRow("from below", "/nowhere/1.txt|sub/../1.txt"_s, false, "DIR/1.txt"_s, "sub/../1.txt"_s);
        addRow("moved alone", "DIR/1.txt|../elsewhere/1.txt"_s, false, "DIR/1.txt"_s, "1.txt"_s);
        addRow("read-only", "/nowhere/1.txt|1.txt"_s, true, "/nowhere/1.txt"_s, "1.txt"_s);
        addRow("nowhere", "/nowhere/1.txt|nor/here.txt"_s, false, "/nowhere/1.txt"_s, "nor/here.txt"_s);
        addRow("without a relative path", "/nowhere/1.txt|"_s, false, "/nowhere/1.txt"_s, QString());
    }

    void aDatabaseMovesWithItsFiles()
    {
        QFETCH(QString, recorded);
        QFETCH(bool, isReadOnly);
        recorded.replace("DIR"_s, m_fixture->folder());
        const QStringList paths = recorded.split(QLatin1Char('|'));
        Sql::run(
            "UPDATE file_paths SET path='%1', rel_path='%2' WHERE path_id=2"_s.arg(paths.at(0), paths.at(1)));
        m_view->setController(nullptr);
        isReadOnly ? m_fixture->reopenReadOnly() : m_fixture->reopen();
        m_view->setController(&m_fixture->mainView());
        lookAtAll();
        QFETCH(QString, path);
        QFETCH(QString, relPath);
        QTRY_COMPARE(Sql::rows("SELECT path, rel_path FROM file_paths WHERE path_id=2"),
                     QStringList{path.replace("DIR"_s, m_fixture->folder()) + QLatin1Char('|') + relPath});
        const bool isFound = paths.at(1) == QLatin1String("1.txt") || !path.startsWith(QLatin1String("/no"));
        QCOMPARE(isMissing(1), !isFound);
        if (isFound)
            QTRY_COMPARE(file(m_ids.at(1))->path(), m_fixture->filePath("1.txt"_s));
        QCOMPARE(m_fixture->takeBoxes(), QStringList());
    }

    void aLockOnlyPutsOff()
    {
        Sql::run("UPDATE file_paths SET path='/nowhere/1.txt' WHERE path_id=2");
        m_fixture->write("0.txt"_s, "another");
        m_view->setController(nullptr);
        m_fixture->reopen();
        m_view->setController(&m_fixture->mainView());
        QSignalSpy warnings(m_fixture->manager(), &DatabaseManger::showTempWarning);
        {
            OtherConnection other(m_fixture->path());
            QVERIFY(other.run("BEGIN IMMEDIATE"_s));
            showAll();
            // The check meets the lock, and nobody hears of it.
            QTRY_VERIFY(m_fixture->manager()->isBusy());
            QVERIFY(!QTest::qWaitFor([&warnings] { return !warnings.isEmpty(); }, 300));
            QVERIFY(m_fixture->manager()->isBusy());
            QVERIFY(other.run("ROLLBACK"_s));
        }
        const QStringList mended{m_fixture->filePath("1.txt"_s)};
        QTRY_COMPARE(Sql::rows("SELECT path FROM file_paths WHERE path_id=2"), mended);
        QTRY_COMPARE(Sql::rows("SELECT file_size FROM files WHERE file_id=1"), QStringList{"7"_s});
        QVERIFY(warnings.isEmpty());
    }

    void tellsOfWhatChanged()
    {
        TrackingSettings::setAdviseOfModifiedFiles(true);
        QStringList updated;
        QStringList deleted;
        OnDialog<FileModificationDialog> notice([&](FileModificationDialog &dialog) {
            updated = names(*dialog.findChild<QTableView *>("updatedFiles"_s));
            deleted = names(*dialog.findChild<QTableView *>("deletedFiles"_s));
            if (notice.count == 2)
                dialog.findChild<QAbstractButton *>("silenceBox"_s)->click();
            dialog.accept();
        });
        m_fixture->write("0.txt"_s, "edited");
        m_fixture->write("1.txt"_s, "2.txt"); // the contents of another one
        QFile replaced(m_fixture->filePath("1.txt"_s));
        QVERIFY(replaced.open(QIODevice::ReadWrite));
        QVERIFY(replaced.setFileTime(QDateTime::fromSecsSinceEpoch(1000000000),
                                     QFileDevice::FileModificationTime));
        replaced.close();
        showAll();
        QTRY_COMPARE(notice.count, 1);
        QCOMPARE(updated, QStringList{"0.txt"_s});
        QCOMPARE(deleted, QStringList{"1.txt"_s});
        QVERIFY(!file(m_ids.at(1)));
        QCOMPARE(file(m_ids.at(0))->size(), 6);
        QVERIFY(QFile::exists(m_fixture->filePath("1.txt"_s)));

        m_fixture->write("0.txt"_s, "once more");
        showAll();
        QTRY_COMPARE(notice.count, 2);
        m_fixture->write("0.txt"_s, "and once more");
        lookAtAll();
        QCOMPARE(file(m_ids.at(0))->size(), 13);
        QCOMPARE(notice.count, 2);
        QVERIFY(!TrackingSettings::adviseOfModifiedFiles());
    }

    void theNoticeTakesNoKeys()
    {
        QTableWidget table(1, 1);
        table.setItem(0, 0, new QTableWidgetItem("old"_s));
        table.show();
        QVERIFY(QTest::qWaitForWindowActive(&table));
        table.editItem(table.item(0, 0));
        QWidget *editor = QApplication::focusWidget();
        QVERIFY(qobject_cast<QLineEdit *>(editor));
        ModificationNotice notice(&table);
        notice.tell({"/a/changed.txt"_s}, {});
        for (int turns = 0; turns < 3; ++turns)
            QCoreApplication::processEvents();
        QVERIFY(!OnDialog<FileModificationDialog>::shown());
        QCOMPARE(QApplication::focusWidget(), editor);
        QTest::keyClick(editor, Qt::Key_Escape);
        QTRY_VERIFY(OnDialog<FileModificationDialog>::shown());
        // This platform activates whatever shows.
        if (QGuiApplication::platformName() != "offscreen"_s)
            QCOMPARE(QApplication::activeWindow(), &table);
        QVERIFY(OnDialog<FileModificationDialog>::shown()->testAttribute(Qt::WA_ShowWithoutActivating));
        QVERIFY(!QApplication::activeModalWidget());
        notice.forget();
        QTRY_VERIFY(!OnDialog<FileModificationDialog>::shown());
    }

    void findsWhatWasHidden()
    {
        for (const char *name : {"0.txt", "1.txt"})
            QVERIFY(remove(name));
        Sql::run("UPDATE file_paths SET path='/nowhere/.0.txt' WHERE path_id=1");
        m_fixture->manager()->reloadAllData();
        m_fixture->write("in/.deep/.0.txt"_s, "0.txt");
        m_fixture->write("in/1.txt"_s, "1.txt");
        QVERIFY(QFile::link(m_fixture->filePath("in"_s), m_fixture->filePath("in/loop"_s)));
        FileLocation location(*m_fixture->mainView().contentsModel(), m_ids, {m_fixture->filePath("in"_s)});
        QSignalSpy finished(&location, &FileLocation::finished);
        location.start();
        QTRY_COMPARE(finished.size(), 1);
        QCOMPARE(location.located().value(m_ids.at(0)), m_fixture->filePath("in/.deep/.0.txt"_s));
        QCOMPARE(location.located().value(m_ids.at(1)), m_fixture->filePath("in/1.txt"_s));
    }

    void aCancelWaitsForNoDisk()
    {
        SilentDisk disk(m_fixture->filePath("silent"_s));
        if (!disk.isThere())
            QSKIP("Only root may mount.");
        QVERIFY(remove("0.txt"));
        const QString found = m_fixture->write("in/0.txt"_s, "0.txt");
        // What was found before the walk got stuck stands.
        QTRY_COMPARE(([&] {
                         FileLocation location(*m_fixture->mainView().contentsModel(), {m_ids.at(0)},
                                               {m_fixture->filePath("in"_s), disk.path(QString())});
                         QSignalSpy finished(&location, &FileLocation::finished);
                         location.start();
                         if (finished.wait(100))
                             return "finished"_s;
                         QElapsedTimer passed;
                         passed.start();
                         location.finish();
                         return passed.elapsed() < 50 ? location.located().value(m_ids.at(0)) : "late"_s;
                     }()),
                     found);
    }

    void findsByContentsOnlyWhatIsCertain_data()
    {
        // Seconds that a copy is older than the record, and the one that is found.
        addColumns<QVector<int>, QString>("ages", "found");
        addRow("the only one", QVector<int>{50}, "0.dat"_s);
        addRow("any of two", QVector<int>{50, 60}, QString());
        addRow("the one of its time", QVector<int>{50, 0}, "1.dat"_s);
        addRow("the first of its time", QVector<int>{50, 0, 0}, "1.dat"_s);
    }

    void findsByContentsOnlyWhatIsCertain()
    {
        QFETCH(QVector<int>, ages);
        QVERIFY(remove("0.txt"));
        const qint64 recorded = file(m_ids.at(0))->modificationSeconds();
        for (int i = 0; i < ages.size(); ++i) {
            const QString name = QString::number(i) + ".dat"_s;
            m_fixture->write("in/"_s + name, "0.txt");
            QFile copy(m_fixture->filePath("in/"_s + name));
            QVERIFY(copy.open(QIODevice::ReadWrite));
            QVERIFY(copy.setFileTime(QDateTime::fromSecsSinceEpoch(recorded - ages.at(i)),
                                     QFileDevice::FileModificationTime));
        }
        FileLocation location(*m_fixture->mainView().contentsModel(), {m_ids.at(0)},
                              {m_fixture->filePath("in"_s)});
        QSignalSpy finished(&location, &FileLocation::finished);
        location.start();
        QTRY_COMPARE(finished.size(), 1);
        QTEST(QFileInfo(location.located().value(m_ids.at(0))).fileName(), "found");
    }

    void leavesWhatAnIdMeansByNow()
    {
        for (const char *name : {"0.txt", "1.txt", "2.txt"})
            QVERIFY(remove(name));
        m_fixture->write("in/0.txt"_s, "0.txt");
        lookAtAll();
        m_fixture->answerBoxesWith(QMessageBox::Ok);
        answerFolders({"in"_s});
        OnDialog<FileLocationDialog> location([&](FileLocationDialog &dialog) {
            dialog.addFolder();
            // Other files come by the first two ids while the dialog is open.
            Sql::run("UPDATE files SET id_code='ZZZZ99'||file_id WHERE file_id<3");
            m_fixture->manager()->reloadAllData();
            dialog.findChild<QPushButton *>("deleteLinksButton"_s)->click();
        });
        locateAction()->trigger();
        m_fixture->takeBoxes();
        settle();
        QCOMPARE(Sql::rows("SELECT file_id FROM files ORDER BY file_id"), QStringList({"1"_s, "2"_s}));
        QCOMPARE(Sql::rows("SELECT path FROM file_paths WHERE path_id=1"),
                 QStringList{m_fixture->filePath("0.txt"_s)});
    }

    void locatesInFolders()
    {
        // By name, by contents, and not at all; of two hits the one of the first folder.
        for (const char *name : {"0.txt", "1.txt", "2.txt"})
            QVERIFY(remove(name));
        m_fixture->write("first/deep/0.txt"_s, "another one");
        m_fixture->write("second/0.txt"_s, "0.txt");
        m_fixture->write("second/renamed.dat"_s, "1.txt");
        m_fixture->write("second/decoy.dat"_s, "x.txt");
        lookAtAll();
        QStringList left;
        answerFolders({"first"_s, "second"_s, QString(), "second"_s});
        OnDialog<FileLocationDialog> location([&](FileLocationDialog &dialog) {
            const auto *missing = dialog.findChild<QListWidget *>("missingFiles"_s);
            left.append(texts(*missing).join(QLatin1Char(',')));
            for (int folders = 0; folders < 3; ++folders) {
                dialog.addFolder();
                left.append(texts(*missing).join(QLatin1Char(',')));
            }
            // What a folder gave goes with it.
            dialog.findChild<QListWidget *>("folders"_s)->setCurrentRow(1);
            dialog.removeSelectedFolder();
            left.append(texts(*missing).join(QLatin1Char(',')));
            dialog.addFolder();
            dialog.findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok)->click();
        });
        locateAction()->trigger();
        QCOMPARE(left, QStringList(
                           {"0.txt,1.txt,2.txt"_s, "1.txt,2.txt"_s, "2.txt"_s, "2.txt"_s, "1.txt,2.txt"_s}));
        settle();
        QCOMPARE(file(m_ids.at(0))->path(), m_fixture->filePath("first/deep/0.txt"_s));
        QCOMPARE(file(m_ids.at(1))->path(), m_fixture->filePath("second/renamed.dat"_s));
        QCOMPARE(file(m_ids.at(1))->name(), "renamed.dat"_s);
        QCOMPARE(Sql::rows("SELECT rel_path FROM file_paths WHERE path_id=2"),
                 QStringList{"second/renamed.dat"_s});
        QVERIFY(!isMissing(0) && !isMissing(1) && isMissing(2));
        // What has other contents than were recorded is refreshed.
        QTRY_COMPARE(file(m_ids.at(0))->size(), 11);
        QCOMPARE(QFileInfo(TrackingSettings::lastLocationDir(QString())).fileName(), "second"_s);
    }

    void leavesAloneWhatOthersHave()
    {
        // Another record has a file of the same name, and one of the same contents, in that folder.
        const qint64 twin = m_fixture->addExternal("in/0.txt"_s);
        QVERIFY(twin > 0);
        QVERIFY(remove("0.txt"));
        m_fixture->write("in/1.txt"_s, "of the same name, and nobody's");
        QVERIFY(remove("1.txt"));
        lookAtAll();
        answerFolders({"in"_s});
        OnDialog<FileLocationDialog> location([&](FileLocationDialog &dialog) {
            dialog.addFolder();
            dialog.onlyApplyFoundFiles();
        });
        locateAction()->trigger();
        settle();
        QVERIFY(isMissing(0));
        QCOMPARE(file(m_ids.at(1))->path(), m_fixture->filePath("in/1.txt"_s));
    }

    void locatesByHand()
    {
        QVERIFY(remove("1.txt"));
        m_fixture->write("found.txt"_s, "whatever");
        lookAtAll();
        QStringList asked;
        QStringList answers = {m_fixture->filePath("0.txt"_s), m_fixture->filePath("found.txt"_s)};
        FileDialogs::setResponder([&](const FileDialogs::Request &request) {
            asked.append(
                QStringList{request.caption, request.directory, request.filter}.join(QLatin1Char('|')));
            return QStringList{answers.takeFirst()};
        });
        OnDialog<FileLocationDialog> location([&](FileLocationDialog &dialog) {
            auto *missing = dialog.findChild<QListWidget *>("missingFiles"_s);
            missing->setCurrentRow(0);
            QTRY_VERIFY(dialog.isActiveWindow());
            QTest::keyClick(missing, Qt::Key_Return);
            QCOMPARE(missing->count(), 1); // another record's
            emit missing->itemDoubleClicked(missing->item(0));
            QCOMPARE(missing->count(), 0);
            QVERIFY(!dialog.findChild<QPushButton *>("deleteLinksButton"_s)->isEnabled());
            // Another program's write does not undo what was chosen.
            OtherConnection other(m_fixture->path());
            QVERIFY(other.run("UPDATE files SET file_description='x' WHERE file_id=1"_s));
            dialog.onlyApplyFoundFiles();
        });
        locateAction()->trigger();
        QCOMPARE(asked.value(0), "Locate File|"_s + m_fixture->folder() + "|*.txt;;All Files (*.*)"_s);
        QCOMPARE(m_fixture->takeBoxes().size(), 1);
        settle();
        QTRY_COMPARE(file(m_ids.at(1))->path(), m_fixture->filePath("found.txt"_s));
        QVERIFY(!isMissing(1));
    }

    void deletesTheRest_data()
    {
        addColumns<bool, bool, bool, int, int>("isConfirmed", "isOk", "isBack", "missing", "files");
        addRow("confirmed", true, false, false, 0, 1);
        addRow("confirmed, and one is back meanwhile", true, false, true, 0, 2);
        addRow("not confirmed, and left by Ok", false, true, false, 2, 3);
        addRow("not confirmed, and left by Cancel", false, false, false, 3, 3);
    }

    void deletesTheRest()
    {
        QFETCH(bool, isConfirmed);
        QFETCH(bool, isOk);
        QFETCH(bool, isBack);
        for (const char *name : {"0.txt", "1.txt", "2.txt"})
            QVERIFY(remove(name));
        m_fixture->write("in/0.txt"_s, "0.txt");
        lookAtAll();
        m_fixture->answerBoxesWith(isConfirmed ? QMessageBox::Ok : QMessageBox::Cancel);
        answerFolders({"in"_s});
        OnDialog<FileLocationDialog> location([&](FileLocationDialog &dialog) {
            dialog.addFolder();
            if (isBack)
                m_fixture->write("1.txt"_s, "1.txt");
            dialog.findChild<QPushButton *>("deleteLinksButton"_s)->click();
            if (!isConfirmed)
                isOk ? dialog.onlyApplyFoundFiles() : dialog.reject();
        });
        locateAction()->trigger();
        QCOMPARE(m_fixture->takeBoxes(), QStringList{"Do you really want to delete the selected links?"_s});
        settle();
        if (isBack)
            lookAtAll();
        QTEST(m_fixture->mainView().missingFileIds().size(), "missing");
        QTEST(Sql::count("files"_s), "files");
    }

private:
    bool remove(const char *name) { return QFile::remove(m_fixture->filePath(QLatin1String(name))); }
    bool isMissing(int number) { return m_fixture->manager()->isMissing(m_ids.at(number)); }
    QAction *locateAction() const { return findAction(m_view, "Locate Missing Files"_s); }
    /** Until nothing is looked at any more. */
    void settle()
    {
        m_fixture->waitForWorker();
        QCoreApplication::processEvents();
        m_fixture->waitForWorker();
    }
    void lookAtAll()
    {
        showAll();
        settle();
    }
    void openFirst(int number)
    {
        m_view->openFile(m_fixture->mainView().sorter()->indexOf(m_ids.at(number)));
    }
    void answerFolders(const QStringList &folders)
    {
        auto left = std::make_shared<QStringList>(folders);
        const QString base = m_fixture->folder();
        FileDialogs::setResponder([left, base](const FileDialogs::Request &) {
            const QString folder = left->isEmpty() ? QString() : left->takeFirst();
            return folder.isEmpty() ? QStringList() : QStringList{base + QLatin1Char('/') + folder};
        });
    }

    QVector<qint64> m_ids;
};

QTEST_MAIN(TestMissingFiles)
#include "tst_missingfiles.moc"
