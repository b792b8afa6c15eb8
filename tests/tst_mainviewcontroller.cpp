#include "app/settings/addingsettings.h"
#include "core/controllers/extractionplan.h"
#include "core/controllers/mainviewcontroller.h"
#include "core/controllers/miscoperationthread.h"
#include "core/prompts/userprompts.h"
#include "models/contents/contentsmodel.h"
#include "models/contents/filefiltermodel.h"
#include "models/contents/sorter.h"
#include "tests/support/localcollection.h"
#include "tests/support/serverdatabase.h"

using Ids = QVector<qint64>;

/** What the main view shows and edits, over a real database. */
class TestMainViewController : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase_data() { addBackEnds(); }

    void init()
    {
        m_fixture = std::make_unique<LocalCollection>(makeTestDatabase());
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
        // Another tag is no reason to select anew.
        QSignalSpy selections(&view(), &MainViewController::tagRequirementsChanged);
        m_fixture->tags().removeTags({m_tags.at(2)});
        QCOMPARE(selections.size(), 0);
    }

    void externalFilesAreRenamedOnTheDisk_data()
    {
        addColumns<QString, QString>("old", "name");
        const QString old = "old.txt"_s;
        addRow("another type", old, "new.pdf"_s);
        addRow("other case", old, "OLD.TXT"_s);
        addRow("as long as names can be", old, QString(251, QLatin1Char('x')) + ".txt"_s);
        addRow("quotes and places", old, "it's \"50%1\" %2.txt"_s);
        addRow("emoji and line", old, "\U0001F600\nnew.txt"_s);
        addRow("backslashes", "a\\b.txt"_s, "c\\d.txt"_s);
        addRow("colons", ":a.txt"_s, ":b.txt"_s);
    }

    void externalFilesAreRenamedOnTheDisk()
    {
        QFETCH(QString, old);
        QFETCH(QString, name);
        const qint64 id = m_fixture->addExternal(old);
        view().showSpecialNode(AllExternalFiles);
        const QString folder = QFileInfo(m_fixture->folder()).canonicalFilePath() + QLatin1Char('/');
        const QModelIndex index = view().sorter()->index(0, ContentsModel::NameColumn);
        QVERIFY(view().sorter()->setData(index, QString(QLatin1Char(' ') + name)));

        QVERIFY(QFileInfo::exists(folder + name));
        QVERIFY(!QFileInfo::exists(folder + old));
        const QString path = view().fileData(id, Path).toString();
        QCOMPARE(QFileInfo(path).canonicalFilePath(), folder + name);
        QCOMPARE(fileRow(id), QStringList({name, path, relative(path)}).join(QLatin1Char('|')));
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
        QFile::link(m_fixture->filePath("nowhere"_s), m_fixture->filePath("dead"_s));
        refuseNewPaths();
        const QString before = fileRow(id);
        const QStringList entries = QDir(m_fixture->folder()).entryList();
        view().showSpecialNode(AllExternalFiles);
        QVERIFY(!rename(id, name));
        QCoreApplication::processEvents();
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
        const QStringList before = contentsOf(m_fixture->folder(), {"o*.txt*"_s});
        (*m_fixture)->setPrompts(UserPrompts::nobody());
        view().showSpecialNode(AllExternalFiles);
        QVERIFY(!rename(id, "other.txt"_s));
        QCoreApplication::processEvents();
        QCOMPARE(contentsOf(m_fixture->folder(), {"o*.txt*"_s}), before);
        (*m_fixture)->setPrompts(m_fixture->prompts());

        QStringList boxes;
        Messages::setResponder([&](const Messages::Box &box) {
            boxes << box.title + QLatin1Char('|') + box.actions.join(QLatin1Char('|'));
            const bool isQuestion = box.icon == QMessageBox::Question && box.buttons == QMessageBox::Cancel &&
                                    box.defaultButton == QMessageBox::Cancel;
            return Messages::Answer{QMessageBox::Cancel, isQuestion ? answer : -1};
        });
        // The question waits until the editor that set the name is gone.
        rename(id, "other.txt"_s);
        QVERIFY(boxes.isEmpty());
        QTRY_COMPARE(boxes.value(0), "File Extraction|Use New Name|Replace"_s);

        const QStringList found = contentsOf(m_fixture->folder(), {"o*.txt*"_s});
        QCOMPARE(found.join(QLatin1Char(' ')), files);
        const QString name = view().fileData(id, Name).toString();
        QVERIFY(found.contains(name + "=old"_s));
        const QString path = view().fileData(id, Path).toString();
        QCOMPARE(fileRow(id), QStringList({name, path, relative(path)}).join(QLatin1Char('|')));
    }

    void extractionSettlesConflicts_data()
    {
        using namespace MiscOperationThread;
        constexpr int rejected = -1;
        // Renamed first; what stands in the folder; the choice for each conflict, and how many there are.
        addColumns<QString, QString, int, int, QString>("rename", "before", "choice", "conflicts", "after");
        const QString all = "a.txt=A b.txt=B c.tar.gz=C"_s;
        const QString other = "c.tar.gz=x c_1.tar.gz=1"_s;
        const QString two = "a.txt=x b.txt=y"_s;
        const QString old = "a.txt=x b.txt=y "_s;
        addRow("free", ""_s, ""_s, int(CancelChoice), 0, all);
        addRow("there already", ""_s, all, int(CancelChoice), 0, all);
        addRow("one, cancelled", ""_s, other, int(CancelChoice), 1, "a.txt=A b.txt=B "_s + other);
        addRow("one, new name", ""_s, other, int(UseNewNameChoice), 1,
               "a.txt=A b.txt=B "_s + other + " c_2.tar.gz=C"_s);
        addRow("one, replaced", ""_s, other, int(ReplaceChoice), 1, all + " c_1.tar.gz=1"_s);
        addRow("several, rejected", ""_s, two, rejected, 2, two);
        addRow("several, left out", ""_s, two, int(CancelChoice), 2, old + "c.tar.gz=C"_s);
        addRow("several, replaced", ""_s, two, int(ReplaceChoice), 2, all);
        addRow("several, new names", ""_s, two, int(UseNewNameChoice), 2,
               "a.txt=x a_1.txt=A b.txt=y b_1.txt=B c.tar.gz=C"_s);
        addRow("name given out", "a.txt"_s, ""_s, int(UseNewNameChoice), 1, "a.txt=A a_1.txt=B c.tar.gz=C"_s);
        addRow("name given out, replaced", "a.txt"_s, ""_s, int(ReplaceChoice), 1,
               "a.txt=A a_1.txt=B c.tar.gz=C"_s);
        addRow("two for one name, replaced", "a.txt"_s, "a.txt=x"_s, int(ReplaceChoice), 2,
               "a.txt=A a_2.txt=B c.tar.gz=C"_s);
        addRow("two for one name", "a.txt"_s, "a.txt=x"_s, int(UseNewNameChoice), 2,
               "a.txt=x a_1.txt=A a_2.txt=B c.tar.gz=C"_s);
        addRow("new name given out", "c_1.tar.gz"_s, "c.tar.gz=x"_s, int(UseNewNameChoice), 1,
               "a.txt=A c.tar.gz=x c_1.tar.gz=B c_2.tar.gz=C"_s);
        const QString full = QString(251, QLatin1Char('y')) + ".txt"_s;
        addRow("no room for a number", full, full + "=x"_s, int(UseNewNameChoice), 1,
               "a.txt=A c.tar.gz=C "_s + full.right(60) + "=B "_s + full + "=x"_s);
        addRow("out of the folder", "../../b.txt"_s, ""_s, int(CancelChoice), 0, all);
        addRow("like a resource", ":b.txt"_s, ""_s, int(CancelChoice), 0, ":b.txt=B a.txt=A c.tar.gz=C"_s);
        addRow("like a resource, replaced", ":b.txt"_s, ":b.txt=x"_s, int(ReplaceChoice), 1,
               ":b.txt=B a.txt=A c.tar.gz=C"_s);
        addRow("like a resource, new name", ":b.txt"_s, ":b.txt=x"_s, int(UseNewNameChoice), 1,
               ":b.txt=x :b_1.txt=B a.txt=A c.tar.gz=C"_s);
        addRow("alike by name, size and checksum", "a.txt"_s, "same checksum"_s, int(CancelChoice), 0,
               "a.txt=A a_1.txt=B c.tar.gz=C"_s);
    }

    void extractionSettlesConflicts()
    {
        QFETCH(QString, rename);
        QFETCH(QString, before);
        QFETCH(int, choice);
        QFETCH(int, conflicts);
        AddingSettings::setLinkToFiles(false);
        Ids ids{1}; // a hyperlink, which has nothing to extract
        for (const QString &name : {"a.txt"_s, "b.txt"_s})
            ids << m_fixture->add(
                QUrl::fromLocalFile(m_fixture->write(name, name.left(1).toUpper().toUtf8())));
        AddingSettings::setLinkToFiles(true);
        ids << m_fixture->add(QUrl::fromLocalFile(m_fixture->write("c.tar.gz"_s, "C")));
        if (!rename.isEmpty())
            QVERIFY(m_fixture->manager()->updateFile(ids.at(2), "file_name"_s, rename));
        const QString folder = m_fixture->filePath("out"_s);
        QVERIFY(QDir().mkpath(folder));
        if (before == "same checksum"_s) {
            for (const int place : {1, 2})
                QVERIFY(m_fixture->manager()->updateFile(ids.at(place), "data_checksum"_s, "7"_s));
            before.clear();
        }
        for (const QString &file : before.split(QLatin1Char(' '), Qt::SkipEmptyParts))
            m_fixture->write("out/"_s + file.section(QLatin1Char('='), 0, 0),
                             file.section(QLatin1Char('='), 1).toUtf8());

        int asked = 0;
        Messages::setResponder([&](const Messages::Box &) {
            ++asked;
            return Messages::Answer{QMessageBox::Cancel,
                                    choice == MiscOperationThread::CancelChoice ? -1 : 2 - choice};
        });
        view().setFileConflictAsker([&](const QString &, const QVector<FileConflict> &found) {
            std::optional<FileConflictChoices> choices;
            if (choice >= 0)
                choices.emplace();
            for (const FileConflict &conflict : found) {
                ++asked;
                if (choices)
                    choices->append({conflict.fileId, choice});
            }
            return choices;
        });
        view().extractFiles(folder, ids);
        m_fixture->waitForWorker();
        QCOMPARE(asked, conflicts);
        QTEST(contentsOf(folder, {"*"_s}).join(QLatin1Char(' ')), "after");
        QCOMPARE(QSettings().value("MainWindow/lastExtractDir"_s).toString(), folder + QLatin1Char('/'));

        // Onto its own place, even when that has changed since it was added.
        m_fixture->write("c.tar.gz"_s, "changed");
        view().extractFiles(m_fixture->folder(), {ids.last()});
        m_fixture->waitForWorker();
        QCOMPARE(asked, conflicts);
        QCOMPARE(TestFolder::read(m_fixture->filePath("c.tar.gz"_s)), QByteArray("changed"));
    }

    void extractionIsPlanned()
    {
        const QString folder = m_fixture->filePath("plan"_s);
        QVector<ExtractionPlan::Source> sources;
        // What is left of them, when they get numbers, is the same.
        for (const QString &first : {"1"_s, "2"_s}) {
            sources.append({sources.size() + 1, first + QString(254, QLatin1Char('y')), {}, 2, 7});
            m_fixture->write("plan/"_s + sources.last().name, "?");
        }
        ExtractionPlan plan(folder, sources);
        QVERIFY(plan.compare([] { return false; }));
        QCOMPARE(plan.conflicts().size(), 2);
        QVERIFY(plan.conflicts().first().newName != plan.conflicts().last().newName);
        // Ended while the file of the same size is read, it is no plan.
        sources = {{1, "c"_s, {}, 1, 7}, {2, "free"_s, {}, 1, 7}};
        m_fixture->write("plan/c"_s, "?");
        int asked = 0;
        QVERIFY(!ExtractionPlan(folder, sources).compare([&] { return ++asked > 2; }));
    }

private:
    /** "name=text" of each file in a folder. */
    static QStringList contentsOf(const QString &folder, const QStringList &filters)
    {
        QStringList found;
        for (const QString &name : QDir(folder).entryList(filters, QDir::Files | QDir::Hidden, QDir::Name))
            found << name + QLatin1Char('=') +
                         QString::fromUtf8(TestFolder::read(folder + QLatin1Char('/') + name));
        found.sort();
        return found;
    }

    MainViewController &view() { return m_fixture->mainView(); }
    /** As an editor of the view does it: what is left to ask or to tell comes from the event loop. */
    bool rename(qint64 id, const QString &name)
    {
        const QModelIndex row = view().sorter()->indexOf(id);
        return view().sorter()->setData(row.siblingAtColumn(ContentsModel::NameColumn), name);
    }

    void refuseNewPaths() { QVERIFY(m_fixture->database().refuse("UPDATE ON file_paths"_s)); }

    /** A server has no folder of its own. */
    QString relative(const QString &path) const
    {
        QFETCH_GLOBAL(bool, isOnServer);
        const QString database = m_fixture->database().details().databaseName();
        return (isOnServer ? QDir() : QFileInfo(database).dir()).relativeFilePath(path);
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
