#include "app/messages/filedialogs.h"
#include "core/controllers/filedragdata.h"
#include "fileops/files/temporarycopies.h"
#include "tests/support/dialoganswers.h"
#include "tests/support/drags.h"
#include "tests/support/filesviewtest.h"
#include "ui/dialogs/multiplefileconflicthandler.h"
#include "ui/views/foreigndragfilter.h"
#include "ui/widgets/dropwatch.h"

#include <QAction>
#include <QApplication>
#include <QDesktopServices>
#include <QDrag>
#include <QPushButton>
#include <QRadioButton>

/** How files leave the main view: opened, extracted by its commands, and dragged to other programs. */
class TestFilesOut : public FilesViewTest
{
    Q_OBJECT

public slots:
    void noteOpened(const QUrl &url) { m_opened << url; }

private slots:
    void init()
    {
        openView();
        m_opened.clear();
        for (const QString &scheme : {"https"_s, "file"_s})
            QDesktopServices::setUrlHandler(scheme, this, "noteOpened");
    }

    void cleanup()
    {
        for (const QString &scheme : {"https"_s, "file"_s})
            QDesktopServices::unsetUrlHandler(scheme);
        closeView();
    }

    void doubleClickOpens_data()
    {
        addColumns<QString, bool, bool, int>("name", "isInternal", "isOpened", "key");
        addRow("link", "https://example.org/a.exe"_s, false, true, 0);
        addRow("external launcher", "a.desktop"_s, false, false, 0);
        addRow("external file", "a.txt"_s, false, true, 0);
        addRow("internal file", "it's 100%1 \u00e4#?.txt"_s, true, true, 0);
        addRow("internal launcher", "a.txt.Desktop"_s, true, false, 0);
        addRow("internal program", "a.EXE"_s, true, false, 0);
        addRow("internal launcher by its contents", "[Desktop Entry]"_s, true, false, 0);
        addRow("internal file named like an ending, by its key", "exe"_s, true, true, int(Qt::Key_Return));
        addRow("external file, by the key of numbers", "a.txt"_s, false, true, int(Qt::Key_Enter));
    }

    void doubleClickOpens()
    {
        QFETCH(QString, name);
        QFETCH(bool, isInternal);
        QFETCH(bool, isOpened);
        AddingSettings::setLinkToFiles(!isInternal);
        const bool isLink = name.contains("://"_s);
        isLink ? m_fixture->add(QUrl(name)) : m_fixture->addExternal(name);
        showAll();
        const QModelIndex index = m_fixture->mainView().sorter()->index(0, 0);
        m_ui->editMode->setChecked(true);
        emit list()->doubleClicked(index);
        QVERIFY(m_opened.isEmpty());
        m_ui->editMode->setChecked(false);
        QFETCH(int, key);
        list()->setCurrentIndex(index);
        key == 0 ? emit list()->doubleClicked(index) : QTest::keyClick(list(), Qt::Key(key));
        m_fixture->waitForWorker();
        QCOMPARE(m_opened.size(), isOpened ? 1 : 0);
        QCOMPARE(m_fixture->takeBoxes().size(), isOpened ? 0 : 1);
        if (!isOpened || isLink)
            return;
        QFile opened(m_opened.first().toLocalFile());
        QVERIFY(opened.open(QIODevice::ReadOnly));
        QCOMPARE(opened.readAll(), name.toUtf8());
        QCOMPARE(opened.fileName() == m_fixture->filePath(name), !isInternal);
        QVERIFY(!isInternal || opened.remove());
    }

    void commandExtractsSelection_data()
    {
        addColumns<QString, QString>("action", "choice");
        addRow("menu, replacing", "extractFilesAction"_s, "replaceAllButton"_s);
        addRow("context menu, with new names", "extractFromContextAction"_s, "newNamesButton"_s);
        addRow("rejected", "extractFilesAction"_s, QString());
    }

    // Forty conflicts, of which the dialog shows only some, and one file that meets none.
    void commandExtractsSelection()
    {
        QFETCH(QString, action);
        QFETCH(QString, choice);
        constexpr int count = 40;
        const QString folder = m_fixture->filePath("target"_s);
        QVERIFY(QDir().mkdir(folder));
        QList<QUrl> urls;
        for (int i = 0; i < count; ++i) {
            const QString name = "&%1.tar.gz"_s.arg(i);
            urls << QUrl::fromLocalFile(m_fixture->write(name, name.toUtf8()));
            m_fixture->write("target/"_s + name, "other");
        }
        m_fixture->mainView().addUrls(urls);
        m_fixture->waitForWorker();
        m_fixture->addExternal("free.txt"_s);
        showAll();
        list()->selectAll();
        FileDialogs::setResponder([&](const FileDialogs::Request &request) {
            return request.caption == "Extract to Directory"_s ? QStringList{folder} : QStringList();
        });
        QString one;
        bool isWide = true;
        QTimer asked;
        connect(&asked, &QTimer::timeout, &asked, [&] {
            auto *shown = qobject_cast<MultipleFileConflictHandler *>(QApplication::activeModalWidget());
            if (!shown)
                return;
            const auto radios = shown->findChildren<QRadioButton *>();
            QVERIFY(radios.size() < 2 * count);
            if (choice.isEmpty())
                return shown->reject();
            shown->findChild<QPushButton *>(choice)->click();
            shown->resize(shown->width() + 200, shown->height());
            const QWidget *line = radios.first()->parentWidget();
            isWide = line->width() == line->parentWidget()->width();
            // One of them by its own choice, the other one than the rest.
            for (QRadioButton *radio : radios) {
                if (!radio->isChecked() && one.isEmpty()) {
                    one = radio->accessibleDescription();
                    radio->click();
                }
            }
            shown->accept();
        });
        asked.start(5);
        m_window->findChild<QAction *>(action)->trigger();
        m_fixture->waitForWorker();
        FileDialogs::setResponder({});
        QVERIFY2(isWide, "lines do not follow the dialog's width");
        QCOMPARE(QFile::exists(folder + "/free.txt"_s), !choice.isEmpty());
        for (int i = 0; i < count; ++i) {
            const QString name = "&%1.tar.gz"_s.arg(i);
            const QString newName = "/&%1_1.tar.gz"_s.arg(i);
            const bool isReplaced = !choice.isEmpty() && (choice == "replaceAllButton"_s) != (name == one);
            QCOMPARE(m_fixture->read(folder + QLatin1Char('/') + name),
                     isReplaced ? name.toUtf8() : QByteArray("other"));
            QCOMPARE(QFile::exists(folder + newName), !choice.isEmpty() && !isReplaced);
        }
    }

    // What a drag carries out of the window, asked for as another program would.
    void dragGivesFilesToOthers_data()
    {
        addColumns<QString, int>("kinds", "copies");
        addRow("external", "E"_s, 0);
        addRow("internal, two of one name", "IIE"_s, 2);
        addRow("hyperlink", "H"_s, -1);
    }

    void dragGivesFilesToOthers()
    {
        QFETCH(QString, kinds);
        QFETCH(int, copies);
        const QVector<qint64> ids = addKinds(kinds);
        if (copies > 1)
            m_fixture->manager()->updateFile(ids.at(1), "file_name"_s, file(ids.at(0))->name());
        const Sorter *sorter = m_fixture->mainView().sorter();
        QModelIndexList rows;
        for (int row = 0; row < sorter->rowCount(); ++row)
            rows << sorter->index(row, 0) << sorter->index(row, 1);
        const std::unique_ptr<QMimeData> data(sorter->mimeData(rows));
        QCOMPARE(IdListMime::unpack(data.get(), Constants::fileMimeType).size(), ids.size());
        QCOMPARE(data->hasUrls(), copies >= 0);
        QCOMPARE(data->hasFormat(FileDragData::copiesFormat), copies > 0);
        QSet<QByteArray> contents;
        for (const QUrl &url : data->urls()) {
            contents << TestFolder::read(url.toLocalFile());
            const bool isCopy = !url.toLocalFile().startsWith(m_fixture->folder());
            QVERIFY(!isCopy || QFileInfo(QFileInfo(url.toLocalFile()).path()).permissions() ==
                                   (QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner | QFile::ReadUser |
                                    QFile::WriteUser | QFile::ExeUser));
            copies -= isCopy ? 1 : 0;
            if (isCopy)
                QVERIFY(QFile::remove(url.toLocalFile()));
            QDir().rmdir(QFileInfo(url.toLocalFile()).path()); // when it was the last one there
        }
        QCOMPARE(qMax(copies, 0), 0);
        QCOMPARE(contents.size(), kinds.count(QLatin1Char('H')) ? 0 : ids.size());
        QVERIFY(!contents.contains(QByteArray()));
        // Over the own files they are no files to add.
        QCOMPARE(drop(list()->viewport(), {5, 5}, *data), Qt::IgnoreAction);
    }

    // Where a program that a drag only passes cannot be told from its target.
    void dragLeavesNothingWhereItPassed()
    {
        addKinds("II"_s);
        auto *drag = new QDrag(list());
        const Sorter *sorter = m_fixture->mainView().sorter();
        drag->setMimeData(sorter->mimeData({sorter->index(0, 0), sorter->index(1, 0)}));
        const QList<QUrl> copies = drag->mimeData()->urls();
        QCOMPARE(copies.size(), 2);
        QVERIFY(QFile::exists(copies.first().toLocalFile()));
        DropWatch(drag).run(Qt::CopyAction); // which nobody takes here
        for (const QUrl &url : copies)
            QVERIFY(!QFile::exists(url.toLocalFile()));
        QVERIFY(!QFile::exists(QFileInfo(copies.first().toLocalFile()).path()));
    }

    void foreignDragBringsLastingUrls_data()
    {
        addColumns<QString, bool, bool>("kinds", "areLinked", "isTaken");
        addRow("external, linked", "E"_s, true, true);
        addRow("internal, copied", "I"_s, false, true);
        addRow("internal, linked", "I"_s, true, false);
        addRow("hyperlink", "H"_s, true, false);
    }

    void foreignDragBringsLastingUrls()
    {
        QFETCH(QString, kinds);
        QFETCH(bool, areLinked);
        QFETCH(bool, isTaken);
        addKinds(kinds);
        const Sorter *sorter = m_fixture->mainView().sorter();
        const std::unique_ptr<QMimeData> data(sorter->mimeData({sorter->index(0, 0)}));
        AddingSettings::setLinkToFiles(areLinked);
        ForeignDragFilter filter;
        qApp->installEventFilter(&filter);
        QCOMPARE(drop(list()->viewport(), {5, 5}, *data), isTaken ? Qt::CopyAction : Qt::IgnoreAction);
        qApp->removeEventFilter(&filter);
    }

private:
    const TemporaryCopies m_copies; // which go at the end, as those of the program do
    QList<QUrl> m_opened;
};

QTEST_MAIN(TestFilesOut)
#include "tst_filesout.moc"
