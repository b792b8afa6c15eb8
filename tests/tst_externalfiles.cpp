#include "fileops/looks/silentplaces.h"
#include "models/trees/externalfilemodel.h"
#include "resources/resources.h"
#include "tests/support/database.h"
#include "tests/support/drags.h"
#include "tests/support/silentdisk.h"
#include "tests/support/text.h"
#include "ui/docks/externalfilesdock.h"
#include "ui/views/externalfileview.h"

/** The tree of the computer's files: what it shows first, what can be dragged out, and that it alters
 * nothing. */
class TestExternalFiles : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        initResources();
        m_folder.write("it's %1 \"x\" \xe2\x98\x83.txt"_s, "text");
        m_folder.write("b.txt"_s, "text");
        QVERIFY(QDir(m_folder.folder()).mkdir("a folder"_s));
        m_folder.write(".hidden"_s, "text");
        qputenv("HOME", QFile::encodeName(m_folder.folder()));
    }

    void homeIsCurrentAndInSight()
    {
        ExternalFilesDock dock;
        auto *view = dock.findChild<ExternalFileView *>();
        dock.resize(400, 160);
        dock.show();
        QVERIFY(!view->isEnabled());
        QVERIFY2(!view->model(), "The window waits for folders");
        QTRY_VERIFY(view->model());
        QTRY_COMPARE(namesAt(*view, view->currentIndex()),
                     QStringList({"a folder"_s, "b.txt"_s, "it's %1 \"x\" \xe2\x98\x83.txt"_s}));
        QCOMPARE(pathAt(view->currentIndex()), QDir::homePath());
        QVERIFY(view->isExpanded(view->currentIndex()));
        QTRY_COMPARE(view->visualRect(view->currentIndex()).top(), 0);

        // From then on it is the user who decides what is seen.
        const QPersistentModelIndex home = view->currentIndex();
        view->setEnabled(true);
        QTest::keyClick(view, Qt::Key_Home);
        m_folder.write("later.txt"_s, "text");
        QTRY_COMPARE(namesAt(*view, home).size(), 4);
        QCoreApplication::processEvents();
        QCOMPARE(view->visualRect(view->currentIndex()).top(), 0);
        QCOMPARE(pathAt(view->currentIndex()), QDir::rootPath());
    }

    void rowsAreOfferedAsUrlsToBeCopied()
    {
        ExternalFileModel model;
        const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        const QModelIndex home = model.setRootPath(m_folder.folder());
        QTRY_VERIFY(model.rowCount(home) >= 3);
        QCOMPARE(model.supportedDragActions(), Qt::DropActions(Qt::CopyAction));
        for (int row = 0; row < model.rowCount(home); ++row) {
            const QModelIndex index = model.index(row, 0, home);
            QVERIFY(index.flags().testFlag(Qt::ItemIsDragEnabled));
            QVERIFY(!(index.flags() & (Qt::ItemIsEditable | Qt::ItemIsDropEnabled)));
            QVERIFY(!model.setData(index, "renamed"_s));
            const std::unique_ptr<QMimeData> data(model.mimeData({index}));
            QCOMPARE(data->urls(), {QUrl::fromLocalFile(model.filePath(index))});
            QVERIFY(!model.dropMimeData(data.get(), Qt::CopyAction, -1, -1, home));
            QVERIFY(model.fileInfo(index).exists());
        }
    }

    void filesFallOnFoldersAlone_data()
    {
        addColumns<QString, bool, bool>("row", "areFiles", "isTaken");
        addRow("files on a folder", "a folder"_s, true, true);
        addRow("files on a file", "b.txt"_s, true, false);
        addRow("tags on a folder", "a folder"_s, false, false);
        addRow("files on the empty ground", QString(), true, false);
    }

    void filesFallOnFoldersAlone()
    {
        QFETCH(QString, row);
        QFETCH(bool, areFiles);
        ExternalFilesDock dock;
        auto *view = dock.findChild<ExternalFileView *>();
        view->setEnabled(true);
        dock.resize(400, 600);
        dock.show();
        const auto rowNamed = [view](const QString &name) {
            const QModelIndex home = view->currentIndex();
            for (int i = 0; home.isValid() && i < view->model()->rowCount(home); ++i) {
                if (view->model()->index(i, 0, home).data().toString() == name)
                    return view->model()->index(i, 0, home);
            }
            return QModelIndex();
        };
        QTRY_VERIFY(view->model() && rowNamed("b.txt"_s).isValid());
        QTRY_VERIFY(!view->visualRect(rowNamed("b.txt"_s)).isEmpty());
        QSignalSpy dropped(&dock, &ExternalFilesDock::filesDropped);
        // Around the folder of the test there may be any number of others.
        row.isEmpty() ? view->collapseAll() : view->scrollTo(rowNamed(row));
        const QPoint at = row.isEmpty() ? QPoint(50, view->viewport()->height() - 5)
                                        : view->visualRect(rowNamed(row)).center();
        const QVector<qint64> ids{5, 3};
        const auto data = areFiles ? fileDrag(ids) : tagDrag(ids);
        QTEST(drop(view->viewport(), at, *data) == Qt::CopyAction, "isTaken");
        QTEST(!dropped.isEmpty(), "isTaken");
        if (!dropped.isEmpty()) {
            QCOMPARE(dropped.first().at(0).toString(), m_folder.filePath(row));
            QCOMPARE(dropped.first().at(1).value<QVector<qint64>>(), ids);
        }
    }

    void aDiskThatDoesNotAnswerHoldsNoEnd()
    {
        SilentDisk disk(m_folder.filePath("silent"_s));
        if (!disk.isThere())
            QSKIP("Only root may mount.");
        QElapsedTimer passed;
        {
            ExternalFilesDock dock;
            dock.show();
            auto *view = dock.findChild<ExternalFileView *>();
            QTRY_VERIFY(view->model());
            // Meanwhile the thread of the model has come to that disk.
            QVERIFY(SilentPlaces::isAnyDiskSilent());
            passed.start();
        }
        QVERIFY(passed.elapsed() < 2000);
    }

private:
    static QString pathAt(const QModelIndex &index)
    {
        return static_cast<const QFileSystemModel *>(index.model())->filePath(index);
    }
    static QStringList namesAt(const QTreeView &view, const QModelIndex &parent)
    {
        QStringList names;
        for (int row = 0; row < view.model()->rowCount(parent); ++row)
            names << view.model()->index(row, 0, parent).data().toString();
        return names;
    }

    TestFolder m_folder;
};

QTEST_MAIN(TestExternalFiles)
#include "tst_externalfiles.moc"
