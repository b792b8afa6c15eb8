#include "core/controllers/mainviewcontroller.h"
#include "models/contentsmodel.h"
#include "models/filefiltermodel.h"
#include "models/sorter.h"
#include "tests/support/localcollection.h"

using Ids = QVector<qint64>;

/** What the main view shows and edits, over a real local database. */
class TestMainViewController : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_fixture = std::make_unique<LocalCollection>();
        m_fixture->addFiles(6);
        m_tags = m_fixture->addTags({"a"_s, "b"_s, "c"_s});
        const auto mode = QAbstractItemModelTester::FailureReportingMode::QtTest;
        for (QAbstractItemModel *model :
             QList<QAbstractItemModel *>{view().contentsModel(), view().filterModel(), view().sorter()})
            new QAbstractItemModelTester(model, mode, model);
    }

    void cleanup() { m_fixture.reset(); }

    void selectionAndSearchExcludeEachOther()
    {
        view().linkTags({1, 2}, {m_tags.at(0)});
        m_fixture->tree().nodeActivated(TagNode, m_fixture->addNode(m_tags.at(0)), {m_tags.at(0)}, {});
        view().setFileFilterString("FILE 5"_s);
        QCOMPARE(view().sorter()->rowCount(), 1);
        QCOMPARE(view().sorter()->fileAt(0)->id(), 5);
        QCOMPARE(view().shownFileIds(), (Ids{1, 2, 3, 4, 5, 6}));
        QCOMPARE(m_fixture->tree().currentNodeType(), 0);
        m_fixture->tags().showTagsSelected({m_tags.at(0)});
        QVERIFY(view().sorter()->filterText().isEmpty());
        QCOMPARE(view().sorter()->rowCount(), 2);
        view().setFileFilterString("c3"_s);
        QVERIFY(m_fixture->tags().selectedTagIds().isEmpty());
        view().showSpecialNode(AllHyperlinks);
        QVERIFY(view().sorter()->filterText().isEmpty());
        QCOMPARE(view().sorter()->rowCount(), 6);
    }

    void tagsStandForThoseBelow()
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

    void relatedFilesShareAllTags()
    {
        view().linkTags({1, 2}, {m_tags.at(0), m_tags.at(1)});
        view().linkTags({3}, {m_tags.at(0)});
        view().showRelated({2, 3});
        QCOMPARE(view().shownFileIds(), (Ids{1, 2}));
        QCOMPARE(m_fixture->tags().selectedTagIds(), (Ids{m_tags.at(0), m_tags.at(1)}));
        view().showRelated({});
        QCOMPARE(view().shownFileIds(), (Ids{1, 2}));
    }

    void removedTagsLeaveTheSelection()
    {
        view().linkTags({1, 2}, {m_tags.at(0)});
        view().linkTags({2, 3}, {m_tags.at(1)});
        view().showTagsSelected({m_tags.at(0), m_tags.at(1)});
        QCOMPARE(view().shownFileIds(), Ids{2});
        m_fixture->tags().removeTags({m_tags.at(1)});
        QCOMPARE(view().shownFileIds(), (Ids{1, 2}));
        QCOMPARE(view().filterModel()->required(), Ids{m_tags.at(0)});
    }

    void externalFilesAreRenamedOnTheDisk_data()
    {
        QTest::addColumn<QString>("name");
        addRow("another type", "new.pdf"_s);
        addRow("other case", "OLD.TXT"_s);
        addRow("as long as names can be", QString(251, QLatin1Char('x')) + ".txt"_s);
        addRow("quotes and places", "it's \"50%1\" %2.txt"_s);
        addRow("emoji and line", "\U0001F600\nnew.txt"_s);
    }

    void externalFilesAreRenamedOnTheDisk()
    {
        QFETCH(QString, name);
        const qint64 id = m_fixture->addExternal("old.txt"_s);
        view().showSpecialNode(AllExternalFiles);
        const QString folder = QFileInfo(m_fixture->folder()).canonicalFilePath() + QLatin1Char('/');
        const QModelIndex index = view().sorter()->index(0, ContentsModel::NameColumn);
        QVERIFY(view().sorter()->setData(index, QString(QLatin1Char(' ') + name)));

        QVERIFY(QFileInfo::exists(folder + name));
        QVERIFY(!QFileInfo::exists(folder + "old.txt"_s));
        const QString path = view().fileData(id, Path).toString();
        QCOMPARE(QFileInfo(path).canonicalFilePath(), folder + name);
        QCOMPARE(fileRow(id), QStringList({name, path, name}).join(QLatin1Char('|')));
        QCOMPARE(index.data().toString(), name);
        QCOMPARE(view().fileData(id, Type).toString(), name.mid(name.lastIndexOf(QLatin1Char('.'))));
        QVERIFY(m_fixture->takeBoxes().isEmpty());
    }

    void refusedNamesChangeNothing_data()
    {
        addColumns<QString, int>("name", "boxes");
        addRow("empty", QString(), 0);
        addRow("equal", "old.txt "_s, 0);
        addRow("refused by the database", "new.txt"_s, 0);
        addRow("with a folder", "sub/new.txt"_s, 1);
        addRow("taken", "other.txt"_s, 1);
        addRow("taken by a dead link", "dead"_s, 1);
        addRow("the folder itself", "."_s, 1);
        addRow("with an end inside", "a\0b"_s, 1);
        addRow("half an emoji", QString(QChar(0xd83d)), 1);
        addRow("longer than names can be", QString(300, QLatin1Char('x')), 1);
    }

    void refusedNamesChangeNothing()
    {
        QFETCH(QString, name);
        const qint64 id = m_fixture->addExternal("old.txt"_s);
        m_fixture->write("other.txt"_s, "other.txt");
        QFile::link("/nowhere at all"_s, m_fixture->filePath("dead"_s));
        refuseNewPaths();
        const QString before = fileRow(id);
        const QStringList entries = QDir(m_fixture->folder()).entryList();
        QVERIFY(!view().updateFileName(id, name));
        QCOMPARE(fileRow(id), before);
        QCOMPARE(view().fileData(id, Name).toString(), "old.txt"_s);
        QCOMPARE(QDir(m_fixture->folder()).entryList(), entries);
        QCOMPARE(TestFolder::read(m_fixture->filePath("other.txt"_s)), QByteArray("other.txt"));
        QTEST(m_fixture->takeBoxes().size(), "boxes");
    }

    void takenNamesAreAskedAbout_data()
    {
        addColumns<int, QString, QString>("answer", "obstacle", "files"); // the index of the pressed button
        const QString both = "old.txt=old other.txt=other"_s;
        addRow("cancel", -1, QString(), both);
        addRow("new name", 0, QString(), "other.txt=other other_1.txt=old"_s);
        addRow("replace", 1, QString(), "other.txt=old"_s);
        addRow("replace, refused by the database", 1, "trigger"_s, both);
        addRow("replace a file of the database", 1, "record"_s, both);
    }

    void takenNamesAreAskedAbout()
    {
        QFETCH(int, answer);
        QFETCH(QString, obstacle);
        QFETCH(QString, files);
        const qint64 id = m_fixture->add(QUrl::fromLocalFile(m_fixture->write("old.txt"_s, "old")));
        const QString other = m_fixture->write("other.txt"_s, "other");
        if (obstacle == "record"_s)
            m_fixture->add(QUrl::fromLocalFile(other));
        if (obstacle == "trigger"_s)
            refuseNewPaths();
        QStringList boxes;
        Messages::setResponder([&](const Messages::Box &box) {
            boxes << box.title;
            return Messages::Answer{QMessageBox::Cancel, answer};
        });
        view().showSpecialNode(AllExternalFiles);
        // The question waits until the editor that set the name is gone.
        view().sorter()->setData(view().sorter()->index(0, ContentsModel::NameColumn), "other.txt"_s);
        QVERIFY(boxes.isEmpty());
        QTRY_COMPARE(boxes.value(0), "File Extraction"_s);

        QStringList found;
        for (const QString &name :
             QDir(m_fixture->folder()).entryList({"o*.txt*"_s}, QDir::Files, QDir::Name))
            found << name + QLatin1Char('=') + QString::fromUtf8(TestFolder::read(m_fixture->filePath(name)));
        found.sort();
        QCOMPARE(found.join(QLatin1Char(' ')), files);
        const QString name = view().fileData(id, Name).toString();
        QVERIFY(found.contains(name + "=old"_s));
        QCOMPARE(fileRow(id),
                 QStringList({name, view().fileData(id, Path).toString(), name}).join(QLatin1Char('|')));
    }

private:
    MainViewController &view() { return m_fixture->mainView(); }

    static void refuseNewPaths()
    {
        QVERIFY(LocalCollection::run("CREATE TRIGGER refuse BEFORE UPDATE ON file_paths "
                                     "BEGIN SELECT RAISE(ABORT, 'refused'); END"_s));
    }

    // Name and paths of an external file as the database has them.
    QString fileRow(qint64 id) const
    {
        return LocalCollection::rows("SELECT file_name, path, rel_path FROM files JOIN file_paths "
                                     "ON storage_id=path_id WHERE internal=0 AND file_id=%1"_s.arg(id))
            .join(QLatin1Char('\n'));
    }

    std::unique_ptr<LocalCollection> m_fixture;
    Ids m_tags;
};

QTEST_MAIN(TestMainViewController)
#include "tst_mainviewcontroller.moc"
