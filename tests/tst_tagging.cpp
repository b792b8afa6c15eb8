#include "core/controllers/favouritetags.h"
#include "models/completion/completionmodel.h"
#include "tests/support/filesviewtest.h"
#include "ui/tagging/namesline.h"
#include "ui/tagging/takennames.h"
#include "ui/widgets/speciallineedit.h"

#include <QAction>
#include <QMenu>
#include <QToolButton>

/** Tags named by the keyboard: what is offered for a text, and the line that puts them on files. */
class TestTagging : public FilesViewTest
{
    Q_OBJECT

private slots:
    void init() { openView(); }
    void cleanup() { closeView(); }

    void offers_data()
    {
        addColumns<QString, QVector<qint64>, QString>("text", "lastUsed", "offered");
        const QVector<qint64> none;
        addRow("natural order", ""_s, none, "Garden 2,Garden 10,Gate,gate,Regarding, J"_s);
        addRow("anywhere, whatever the case", "GARD"_s, none, "Garden 2,Garden 10,Regarding, J,+GARD"_s);
        addRow("last used first", "ar"_s, QVector<qint64>{5, 99, 1}, "Regarding, J,Garden 10,Garden 2,+ar"_s);
        addRow("the name itself before longer and newer ones", "gate"_s, QVector<qint64>{3}, "gate,Gate"_s);
        addRow("blanks do not count", "  garden   2 "_s, none, "Garden 2,+garden 2"_s);
        addRow("none", "xyz"_s, none, "+xyz"_s);
    }

    void offers()
    {
        QFETCH(QString, text);
        QFETCH(QVector<qint64>, lastUsed);
        CompletionModel model;
        model.index().setNames(
            {{1, "Garden 10"_s}, {2, "Garden 2"_s}, {3, "Gate"_s}, {4, "gate"_s}, {5, "Regarding, J"_s}});
        model.index().setLastUsed(lastUsed);
        model.complete(text, {});
        QStringList offered;
        for (int row = 0; row < model.rowCount(); ++row) {
            const QModelIndex index = model.index(row, 0);
            offered += (index.data(CompletionModel::IdRole).toInt() == 0 ? "+"_s : QString()) +
                       index.data(CompletionModel::NameRole).toString();
        }
        QTEST(offered.join(QLatin1Char(',')), "offered");
    }

    void manyNames()
    {
        QHash<qint64, QString> names;
        for (int i = 1; i <= 5000; ++i)
            names.insert(i, "Some longer name of a tag %1"_s.arg(i));
        CompletionModel model;
        model.index().setNames(names);
        QBENCHMARK
        {
            model.complete("AME OF A TAG 49"_s, {});
        }
        QCOMPARE(model.rowCount(), 112);
    }

    void typing_data()
    {
        addColumns<QString, QString, QString>("keys", "taken", "tags"); // < is Backspace, | Return, > Tab
        addRow("any part of a name", "arde|"_s, ""_s, "Garden"_s);
        addRow("several, new ones marked before", "gard,Plants 2,"_s, "Garden,New: Plants 2"_s, ""_s);
        addRow("new ones are made", "gard, Plants   2|"_s, ""_s, "Garden,Plants 2"_s);
        addRow("taken back", "gard,New<<<,House,<|"_s, ""_s, "Garden"_s);
        addRow("a name with a comma", "smith, j,garden>|"_s, ""_s, "Garden,Smith, J"_s);
        addRow("twice is once", "garden,Garden,Zoo,Zoo|"_s, ""_s, "Garden,Zoo"_s);
        addRow("blanks make no name", " , ,|"_s, ""_s, ""_s);
        addRow("quotes vanish", "\"Zoo\"|"_s, ""_s, "Zoo"_s);
    }

    void typing()
    {
        QFETCH(QString, keys);
        m_fixture->addTags({"Garden"_s, "Smith, J"_s});
        const QVector<qint64> ids = openLineOn(2);
        type(keys);
        QTEST(line()->findChild<TakenNames *>()->accessibleName().replace(", N"_s, ",N"_s), "taken");
        for (const qint64 id : ids)
            QTEST(namesOn(id), "tags");
        QCOMPARE(line()->isVisible(), !keys.endsWith(QLatin1Char('|')));
    }

    void refusedTextStays_data()
    {
        QTest::addColumn<QString>("statement");
        addRow("new tag", "CREATE TRIGGER no BEFORE INSERT ON tags BEGIN SELECT raise(ABORT,'no'); END"_s);
        addRow("link", "CREATE TRIGGER no BEFORE INSERT ON file_tag BEGIN SELECT raise(ABORT,'no'); END"_s);
        addRow("locked", "BEGIN IMMEDIATE"_s);
    }

    void refusedTextStays()
    {
        QFETCH(QString, statement);
        m_fixture->addTags({"Garden"_s});
        const qint64 id = openLineOn(1).first();
        OtherConnection other(m_fixture->path());
        QVERIFY(other.run(statement));
        type("gard,Plants|"_s);
        QVERIFY(line()->isVisible());
        QCOMPARE(line()->findChild<TakenNames *>()->accessibleName(), "Garden, New: Plants"_s);
        QCOMPARE(namesOn(id), QString());
        QVERIFY(!m_fixture->manager()->hasTagNamed("Plants"_s));
        QVERIFY(other.run(statement.startsWith("BEGIN"_s) ? "ROLLBACK"_s : "DROP TRIGGER no"_s));
        QTRY_VERIFY((type("|"_s), namesOn(id) == "Garden,Plants"_s));
        QVERIFY(!line()->isVisible());
    }

    void pinGoesOn()
    {
        const QVector<qint64> tags = m_fixture->addTags({"Garden"_s});
        m_fixture->addFiles(3);
        // Each file leaves this view with its first tag.
        m_fixture->mainView().showSpecialNode(AllFilesWithoutTags);
        list()->setCurrentIndex(list()->model()->index(0, 1));
        action("addTagsAction")->trigger();
        line()->findChild<QToolButton *>("pinButton"_s)->setChecked(true);
        type("gard|"_s);
        type("gard|"_s);
        QVERIFY(line()->isVisible());
        QCOMPARE(namesOn(1) + namesOn(2) + namesOn(3), "GardenGarden"_s);
        QCOMPARE(list()->selectionModel()->selectedRows().size(), 1);
        m_fixture->tags().favourites()->setPlace(tags.first(), 9);
        QTest::keyClick(edit(), Qt::Key_0, Qt::AltModifier);
        QCOMPARE(namesOn(3), "Garden"_s);
        m_fixture->tags().removeTags(tags);
        QCOMPARE(m_fixture->tags().favourites()->tagAt(9), 0);
    }

private:
    NamesLine *line() const { return m_view->findChild<NamesLine *>(); }
    SpecialLineEdit *edit() const { return line()->findChild<SpecialLineEdit *>(); }
    QAction *action(const char *name) const { return m_view->findChild<QAction *>(QLatin1String(name)); }

    QVector<qint64> openLineOn(int count)
    {
        m_fixture->addFiles(count);
        showAll();
        list()->selectAll();
        action("addTagsAction")->trigger();
        return m_fixture->manager()->files().keys().toVector();
    }

    void type(const QString &keys)
    {
        for (const QChar key : keys) {
            if (key == QLatin1Char('|'))
                QTest::keyClick(edit(), Qt::Key_Return);
            else if (key == QLatin1Char('<'))
                QTest::keyClick(edit(), Qt::Key_Backspace);
            else if (key == QLatin1Char('>'))
                QTest::keyClick(edit(), Qt::Key_Tab);
            else
                QTest::keyClick(edit(), key.toLatin1());
        }
    }

    QString namesOn(qint64 fileId)
    {
        QStringList names = m_fixture->tags().tagsNames(file(fileId)->tags()).values();
        names.sort();
        return names.join(QLatin1Char(','));
    }
};

QTEST_MAIN(TestTagging)
#include "tst_tagging.moc"
