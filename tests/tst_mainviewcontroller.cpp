#include "core/controllers/mainviewcontroller.h"
#include "models/contentsmodel.h"
#include "models/filefiltermodel.h"
#include "models/sorter.h"
#include "tests/support/filesfixture.h"

#include <QAbstractItemModelTester>
#include <QDesktopServices>
#include <QFileInfo>
#include <QSignalSpy>
#include <QtTest>

namespace {
using Ids = QVector<qint64>;

/** Takes the place of the program that the system has for a file. */
class UrlCatcher : public QObject
{
    Q_OBJECT

public:
    UrlCatcher() { QDesktopServices::setUrlHandler(QStringLiteral("file"), this, "take"); }
    ~UrlCatcher() override { QDesktopServices::unsetUrlHandler(QStringLiteral("file")); }

    QList<QUrl> urls;

public slots:
    void take(const QUrl &url) { urls.append(url); }
};

} // namespace

/** What the main view shows and edits, over a real local database. */
class TestMainViewController : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void selectionAndSearchExcludeEachOther();
    void emptySearchShowsAll();
    void tagsStandForThoseBelow();
    void relatedFilesShareAllTags();
    void removedTagsLeaveTheSelection();
    void externalFilesAreRenamedOnTheDisk_data();
    void externalFilesAreRenamedOnTheDisk();
    void refusedNamesChangeNothing_data();
    void refusedNamesChangeNothing();
    void failedRenamesAreTakenBack();
    void linksKeepTheirSlashes();
    void editsReachTheTable();
    void missingFilesAreThoseShown();
    void urlsBecomeFilesAndLinks();
    void newsOfTheManagerGoOn();
    void extractedFilesAreOpened();
    void tagNamesFollowTheTags();

private:
    MainViewController &view() { return m_fixture->mainView(); }
    QString fileRow(qint64 id) const;

    std::unique_ptr<FilesFixture> m_fixture;
    Ids m_tags;
};

void TestMainViewController::init()
{
    m_fixture = std::make_unique<FilesFixture>();
    m_fixture->addFiles(6);
    m_tags = m_fixture->addTags({QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")});
    const auto mode = QAbstractItemModelTester::FailureReportingMode::QtTest;
    for (QAbstractItemModel *model :
         QList<QAbstractItemModel *>{view().contentsModel(), view().filterModel(), view().sorter()})
        new QAbstractItemModelTester(model, mode, model);
}

void TestMainViewController::cleanup()
{
    m_fixture.reset();
}

// Name and paths of an external file as the database has them.
QString TestMainViewController::fileRow(qint64 id) const
{
    return LocalCollection::rows(QStringLiteral("SELECT file_name, path, rel_path FROM files JOIN file_paths "
                                                "ON storage_id=path_id WHERE internal=0 AND file_id=%1")
                                     .arg(id))
        .join(QLatin1Char('\n'));
}

void TestMainViewController::selectionAndSearchExcludeEachOther()
{
    view().linkTags({1, 2}, {m_tags.at(0)});
    m_fixture->tree().nodeActivated(TagNode, m_fixture->addNode(m_tags.at(0)), {m_tags.at(0)}, {});
    QSignalSpy spy(&view(), &MainViewController::tagRequirementsChanged);
    view().setFileFilterString(QStringLiteral("FILE 5"));
    QCOMPARE(view().sorter()->rowCount(), 1);
    QCOMPARE(view().sorter()->fileAt(0)->id(), 5);
    QCOMPARE(view().shownFileIds(), (Ids{1, 2, 3, 4, 5, 6}));
    QCOMPARE(m_fixture->tree().currentNodeType(), 0);
    QCOMPARE(spy.size(), 1);
    QCOMPARE(spy.first().at(0).value<NodeType>(), AllFiles);

    m_fixture->tags().showTagsSelected({m_tags.at(0)});
    QVERIFY(view().sorter()->filterText().isEmpty());
    QCOMPARE(view().sorter()->rowCount(), 2);
    QCOMPARE(spy.size(), 2);
    QCOMPARE(spy.last().at(0).value<NodeType>(), TagNode);
    QCOMPARE(spy.last().at(1).value<Ids>(), Ids{m_tags.at(0)});

    view().setFileFilterString(QStringLiteral("c3"));
    QVERIFY(m_fixture->tags().selectedTagIds().isEmpty());
    view().showSpecialNode(AllHyperlinks);
    QVERIFY(view().sorter()->filterText().isEmpty());
    QCOMPARE(view().sorter()->rowCount(), 6);
}

void TestMainViewController::emptySearchShowsAll()
{
    view().showSpecialNode(AllInternalFiles);
    QCOMPARE(view().sorter()->rowCount(), 0);
    view().setFileFilterString(QString());
    QCOMPARE(view().sorter()->rowCount(), 6);
}

void TestMainViewController::tagsStandForThoseBelow()
{
    const qint64 a = m_tags.at(0);
    const qint64 b = m_tags.at(1);
    const qint64 c = m_tags.at(2);
    m_fixture->relations().addChildren(QString(), {a});
    m_fixture->relations().addChildren(QString::number(a), {b});
    view().linkTags({1}, {a});
    view().linkTags({2, 3}, {b});
    view().linkTags({3, 4}, {c});
    QSignalSpy dTags(view().filterModel(), &FileFilterModel::dTagsChanged);
    view().showTagsSelected({a});
    QCOMPARE(view().shownFileIds(), (Ids{1, 2, 3}));
    QCOMPARE(dTags.size(), 1);
    QCOMPARE(dTags.first().first().value<Ids>(), (Ids{a, b, c}));
    view().showTagsSelected({a, c});
    QCOMPARE(view().shownFileIds(), Ids{3});
    view().showTagsEitherOr({a, c});
    QCOMPARE(view().shownFileIds(), (Ids{1, 2, 3, 4}));

    // The selection stays exact while links come and go.
    view().linkTags({5}, {b});
    QCOMPARE(view().shownFileIds(), (Ids{1, 2, 3, 4, 5}));
    view().unlinkTags({2, 5}, {b});
    QCOMPARE(view().shownFileIds(), (Ids{1, 3, 4}));
    QCOMPARE(view().sorter()->rowCount(), 3);
}

void TestMainViewController::relatedFilesShareAllTags()
{
    view().linkTags({1, 2}, {m_tags.at(0), m_tags.at(1)});
    view().linkTags({3}, {m_tags.at(0)});
    view().showRelated({2, 3});
    QCOMPARE(view().shownFileIds(), (Ids{1, 2}));
    QCOMPARE(m_fixture->tags().selectedTagIds(), (Ids{m_tags.at(0), m_tags.at(1)}));
    view().showRelated({});
    view().showRelated({99});
    QCOMPARE(view().shownFileIds(), (Ids{1, 2}));
}

void TestMainViewController::removedTagsLeaveTheSelection()
{
    view().linkTags({1, 2}, {m_tags.at(0)});
    view().linkTags({2, 3}, {m_tags.at(1)});
    view().showTagsSelected({m_tags.at(0), m_tags.at(1)});
    QCOMPARE(view().shownFileIds(), Ids{2});
    m_fixture->tags().removeTags({m_tags.at(1)});
    QCOMPARE(view().shownFileIds(), (Ids{1, 2}));
    QCOMPARE(view().filterModel()->required(), Ids{m_tags.at(0)});
}

void TestMainViewController::externalFilesAreRenamedOnTheDisk_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("plain") << QStringLiteral("new.txt");
    QTest::newRow("another type") << QStringLiteral("new.pdf");
    QTest::newRow("quotes") << QStringLiteral("it's \"quoted\".txt");
    QTest::newRow("places of values") << QStringLiteral("50%1 %2.txt");
    QTest::newRow("emoji and line") << QStringLiteral("\U0001F600\nnew.txt");
}

void TestMainViewController::externalFilesAreRenamedOnTheDisk()
{
    QFETCH(QString, name);
    const qint64 id = m_fixture->addExternal(QStringLiteral("old.txt"));
    view().showSpecialNode(AllExternalFiles);
    const QString folder = QFileInfo(m_fixture->folder()).canonicalFilePath() + QLatin1Char('/');
    const QModelIndex index = view().sorter()->index(0, ContentsModel::NameColumn);
    QVERIFY(view().sorter()->setData(index, QString(QLatin1Char(' ') + name)));

    QVERIFY(QFileInfo::exists(folder + name));
    QVERIFY(!QFileInfo::exists(folder + QStringLiteral("old.txt")));
    const QString path = view().fileData(id, Path).toString();
    QCOMPARE(QFileInfo(path).canonicalFilePath(), folder + name);
    QCOMPARE(fileRow(id), QStringList({name, path, name}).join(QLatin1Char('|')));
    QCOMPARE(index.data().toString(), name);
    QCOMPARE(view().fileData(id, Type).toString(), name.mid(name.lastIndexOf(QLatin1Char('.'))));
    QVERIFY(m_fixture->takeBoxes().isEmpty());
}

void TestMainViewController::refusedNamesChangeNothing_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("boxes");
    QTest::newRow("empty") << QString() << 0;
    QTest::newRow("blank") << QStringLiteral("  ") << 0;
    QTest::newRow("equal") << QStringLiteral("old.txt ") << 0;
    QTest::newRow("with a folder") << QStringLiteral("sub/new.txt") << 1;
    QTest::newRow("taken") << QStringLiteral("other.txt") << 1;
    QTest::newRow("taken by a dead link") << QStringLiteral("dead") << 1;
    QTest::newRow("the folder itself") << QStringLiteral(".") << 1;
    QTest::newRow("longer than names can be") << QString(300, QLatin1Char('x')) << 1;
}

void TestMainViewController::refusedNamesChangeNothing()
{
    QFETCH(QString, name);
    const qint64 id = m_fixture->addExternal(QStringLiteral("old.txt"));
    m_fixture->write(QStringLiteral("other.txt"));
    QFile::link(QStringLiteral("/nowhere at all"), m_fixture->folder() + QStringLiteral("/dead"));
    const QString before = fileRow(id);
    const QStringList entries = QDir(m_fixture->folder()).entryList();
    QVERIFY(!view().updateFileName(id, name));
    QCOMPARE(fileRow(id), before);
    QCOMPARE(QDir(m_fixture->folder()).entryList(), entries);
    QFile other(m_fixture->folder() + QStringLiteral("/other.txt"));
    QVERIFY(other.open(QIODevice::ReadOnly));
    QCOMPARE(other.readAll(), QByteArray("other.txt"));
    QTEST(m_fixture->takeBoxes().size(), "boxes");
}

void TestMainViewController::failedRenamesAreTakenBack()
{
    const qint64 id = m_fixture->addExternal(QStringLiteral("old.txt"));
    const QString before = fileRow(id);
    QVERIFY(LocalCollection::run(QStringLiteral("CREATE TRIGGER refuse BEFORE UPDATE ON file_paths "
                                                "BEGIN SELECT RAISE(ABORT, 'refused'); END")));
    QSignalSpy errors(m_fixture->get(), &Collection::errorOccured);
    QVERIFY(!view().updateFileName(id, QStringLiteral("new.txt")));
    QCOMPARE(errors.size(), 1);
    QVERIFY(QFileInfo::exists(m_fixture->folder() + QStringLiteral("/old.txt")));
    QVERIFY(!QFileInfo::exists(m_fixture->folder() + QStringLiteral("/new.txt")));
    QCOMPARE(fileRow(id), before);
    QCOMPARE(view().fileData(id, Name).toString(), QStringLiteral("old.txt"));

    QFile::remove(m_fixture->folder() + QStringLiteral("/old.txt"));
    QVERIFY(!view().updateFileName(id, QStringLiteral("newer.txt")));
    QCOMPARE(m_fixture->takeBoxes(),
             QStringList{QStringLiteral("Rename File: The file could not be renamed.")});
}

void TestMainViewController::linksKeepTheirSlashes()
{
    QVERIFY(view().updateFileName(3, QStringLiteral("https://example.org/a'b")));
    QCOMPARE(view().fileData(3, Name).toString(), QStringLiteral("https://example.org/a'b"));
    QCOMPARE(LocalCollection::value("SELECT file_name FROM files WHERE file_id=3"),
             QStringLiteral("https://example.org/a'b"));
    QVERIFY(m_fixture->takeBoxes().isEmpty());
    QVERIFY(!view().fileData(99, Name).isValid());
    QVERIFY(!view().updateFileName(99, QStringLiteral("x")));
}

void TestMainViewController::editsReachTheTable()
{
    view().showSpecialNode(AllFiles);
    QSignalSpy changes(view().sorter(), &QAbstractItemModel::dataChanged);
    QVERIFY(view().updateFileDescription(4, QStringLiteral("12\" disc, %1")));
    QCOMPARE(changes.size(), 1);
    QCOMPARE(view().sorter()->index(3, ContentsModel::DescriptionColumn).data().toString(),
             QStringLiteral("12\" disc, %1"));
    QVERIFY(!view().updateFileDescription(4, QStringLiteral("12\" disc, %1")));

    view().deleteFiles({2, 5});
    m_fixture->waitForWorker();
    QCOMPARE(view().shownFileIds(), (Ids{1, 3, 4, 6}));
    QCOMPARE(view().sorter()->rowCount(), 4);
}

void TestMainViewController::missingFilesAreThoseShown()
{
    const qint64 shown = m_fixture->addExternal(QStringLiteral("a"), {m_tags.at(0)});
    const qint64 other = m_fixture->addExternal(QStringLiteral("b"));
    view().showTagsSelected({m_tags.at(0)});
    QSignalSpy changes(view().sorter(), &QAbstractItemModel::dataChanged);
    QVERIFY(QMetaObject::invokeMethod(m_fixture->manager(), "gotMissedFileIds",
                                      Q_ARG(QVector<qint64>, (Ids{other, shown}))));
    QCOMPARE(view().missingFileIds(), Ids{shown});
    QCOMPARE(changes.size(), 1);
    view().showSpecialNode(AllFiles);
    QCOMPARE(view().missingFileIds(), (Ids{shown, other}));
}

void TestMainViewController::urlsBecomeFilesAndLinks()
{
    const QString file = m_fixture->write(QStringLiteral("100% #1.txt"));
    const Ids before = view().contentsModel()->fileIndex().ids();
    QSignalSpy started(&view(), &MainViewController::startedAddingFiles);
    view().addUrls({QUrl(), QUrl::fromLocalFile(file), QUrl(QStringLiteral("https://example.org/a?b=c#d"))},
                   {m_tags.at(1)});
    m_fixture->waitForWorker();
    QVERIFY(!started.isEmpty());
    view().showTagsSelected({m_tags.at(1)});
    QCOMPARE(view().sorter()->rowCount(), 2);
    QCOMPARE(view().sorter()->fileAt(0)->name(), QStringLiteral("100% #1.txt"));
    QCOMPARE(view().sorter()->fileAt(1)->name(), QStringLiteral("https://example.org/a?b=c#d"));
    QCOMPARE(view().contentsModel()->rowCount(), before.size() + 2);
}

void TestMainViewController::newsOfTheManagerGoOn()
{
    QSignalSpy progress(&view(), &MainViewController::addingFilesProgress);
    QSignalSpy finished(&view(), &MainViewController::finishedAddingFiles);
    QSignalSpy modified(&view(), &MainViewController::filesModified);
    emit m_fixture->manager()->addingFilesProgress(QStringLiteral("text"), 7);
    emit m_fixture->manager()->finishedAddingFiles();
    emit m_fixture->manager()->filesModified({1, 2}, {});
    QCOMPARE(progress.takeFirst(), (QVariantList{QStringLiteral("text"), 7}));
    QCOMPARE(finished.size(), 1);
    QCOMPARE(modified.takeFirst().first().value<Ids>(), (Ids{1, 2}));
}

void TestMainViewController::extractedFilesAreOpened()
{
    const UrlCatcher catcher;
    emit m_fixture->manager()->extractedTempFiles(
        {{1, QStringLiteral("/tmp/a b#1")}, {2, QStringLiteral("/x")}});
    QCOMPARE(catcher.urls, (QList<QUrl>{QUrl::fromLocalFile(QStringLiteral("/tmp/a b#1")),
                                        QUrl::fromLocalFile(QStringLiteral("/x"))}));
}

void TestMainViewController::tagNamesFollowTheTags()
{
    view().linkTags({1}, {m_tags.at(0), m_tags.at(2)});
    view().showSpecialNode(AllFiles);
    const QModelIndex shown = view().sorter()->index(0, ContentsModel::TagsColumn);
    QCOMPARE(shown.data().toString(), QStringLiteral("a, c"));
    QSignalSpy changes(view().sorter(), &QAbstractItemModel::dataChanged);
    m_fixture->tags().renameTag(m_tags.at(0), QStringLiteral("first"));
    QCOMPARE(shown.data().toString(), QStringLiteral("first, c"));
    QVERIFY(!changes.isEmpty());
    QCOMPARE(view().tagNames({99, m_tags.at(1)}), QStringLiteral("b"));
}

QTEST_MAIN(TestMainViewController)
#include "tst_mainviewcontroller.moc"
