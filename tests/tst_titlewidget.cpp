#include "core/controllers/narrowing.h"
#include "core/records/tbnode.h"
#include "models/contents/sorter.h"
#include "tests/support/drags.h"
#include "tests/support/localcollection.h"
#include "ui/views/titlewidget.h"

#include <QDropEvent>
#include <QLabel>
#include <QRegularExpression>

using Ids = QVector<qint64>;

/** The bar above the files: its words for each requirement, and tags that are dropped on it. */
class TestTitleWidget : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_fixture = std::make_unique<LocalCollection>();
        m_bar = std::make_unique<TitleWidget>();
        m_bar->setController(&m_fixture->mainView());
        QCOMPARE(m_fixture->addTags({"A"_s, "B"_s, "C"_s, "D"_s}), (Ids{1, 2, 3, 4}));
    }

    void cleanup()
    {
        m_bar.reset();
        m_fixture.reset();
    }

    void tellsWhatIsShown_data()
    {
        addColumns<int, Ids, Ids, Ids, QString, QString>("type", "required", "eitherOr", "excluded",
                                                         "heading", "text");
        const auto row = [](const char *name, const Ids &required, const Ids &eitherOr, const Ids &excluded,
                            const char *text) {
            addRow(name, 8, required, eitherOr, excluded, "Tag Requirements:"_s, QString::fromLatin1(text));
        };
        row("one tag", {1}, {}, {}, " A ");
        row("three tags", {1, 2, 3}, {}, {}, " A <i>and</i>  B <i>and</i>  C ");
        row("any of two", {}, {4, 1}, {}, "( D <i>or</i>  A )");
        row("two excluded", {}, {}, {2, 3}, "<i>without:</i>  B <i>or</i>  C ");
        row("required and excluded", {1}, {}, {2}, " A , <i>without:</i>  B ");
        row("all three groups", {1}, {2, 3}, {4}, " A <i>and</i> ( B <i>or</i>  C ), <i>without:</i>  D ");
        addRow("everything", 1, Ids(), Ids(), Ids(), QString(), "All files"_s);
        addRow("no tag left", 8, Ids(), Ids(), Ids(), QString(), "No tag or browsing node open"_s);
        addRow("unknown type", 9, Ids(), Ids(), Ids(), QString(), QString());
    }

    void tellsWhatIsShown()
    {
        QFETCH(int, type);
        QFETCH(Ids, required);
        QFETCH(Ids, eitherOr);
        QFETCH(Ids, excluded);
        m_bar->setRequirements(NodeType(type), required, eitherOr, excluded);
        QTEST(heading(), "heading");
        QTEST(text(), "text");
    }

    void namesAreNoMarkup()
    {
        const qint64 tagId = m_fixture->tags().addTag("a<b>&%1 \U0001F600"_s);
        m_fixture->mainView().showTagsSelected({tagId});
        QCOMPARE(text(), " a&lt;b&gt;&amp;%1 \U0001F600 "_s);
        m_fixture->tags().renameTag(tagId, "Z"_s);
        QCOMPARE(text(), " Z "_s);
    }

    void tellsWhatIsSearched()
    {
        m_fixture->mainView().setFileFilterString("a<b"_s);
        QCOMPARE(text(), "All files, <i>search:</i> \"a&lt;b\""_s);
        m_fixture->mainView().setFileFilterString(QString(200, QLatin1Char('x')));
        QVERIFY(text().size() < 150);
        m_fixture->mainView().setFileFilterString(QString());
        QCOMPARE(text(), "All files"_s);
    }

    void droppedTagsBecomeRequirement()
    {
        const qint64 both = m_fixture->addExternal("both"_s, {1, 2});
        m_fixture->addExternal("one"_s, {1});
        const auto data = tagDrag({1, 2});
        QDragEnterEvent enter({1, 1}, Qt::CopyAction, data.get(), Qt::LeftButton, Qt::NoModifier);
        enter.ignore();
        QApplication::sendEvent(m_bar.get(), &enter);
        QVERIFY(enter.isAccepted());
        QDropEvent drop({1, 1}, Qt::CopyAction, data.get(), Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(m_bar.get(), &drop);
        QCOMPARE(text(), " A <i>and</i>  B "_s);
        QCOMPARE(m_fixture->mainView().shownFileIds(), Ids{both});
        QCOMPARE(m_fixture->tags().selectedTagIds(), (Ids{1, 2}));

        QMimeData shouted;
        shouted.setData("vorna/TAGIDS"_s, data->data("vorna/tagIDs"_s));
        QDragEnterEvent foreign({1, 1}, Qt::CopyAction, &shouted, Qt::LeftButton, Qt::NoModifier);
        foreign.ignore();
        QApplication::sendEvent(m_bar.get(), &foreign);
        QVERIFY(!foreign.isAccepted());
    }

    void narrowsTagByTag()
    {
        const qint64 ab = m_fixture->addExternal("ab"_s, {1, 2});
        const qint64 abd = m_fixture->addExternal("abd"_s, {1, 2, 4});
        const qint64 ac = m_fixture->addExternal("ac"_s, {1, 3});
        m_fixture->relations().addChildren(QString(), {2});
        m_fixture->relations().addChildren("2"_s, {3});
        Narrowing *narrowing = m_fixture->mainView().narrowing();
        const auto shown = [this] { return m_fixture->mainView().shownFileIds(); };

        m_fixture->tags().showTagsEitherOr({1});
        const auto data = tagDrag({2});
        QDragEnterEvent enter({1, 1}, Qt::CopyAction, data.get(), Qt::LeftButton, Qt::ControlModifier);
        QApplication::sendEvent(m_bar.get(), &enter);
        QDropEvent drop({1, 1}, Qt::CopyAction, data.get(), Qt::LeftButton, Qt::ControlModifier);
        QApplication::sendEvent(m_bar.get(), &drop);
        QCOMPARE(text(), " A <i>and</i>  B "_s);
        QCOMPARE(shown(), (Ids{ab, abd, ac})); // C stands below B
        QCOMPARE(m_fixture->tags().selectedTagIds(), (Ids{1, 2}));
        narrowing->exclude(4);
        QCOMPARE(text(), " A <i>and</i>  B , <i>without:</i>  D "_s);
        QCOMPARE(shown(), (Ids{ab, ac}));
        // What stands below now counts when all was read anew, and the rest of the question stays.
        m_fixture->relations().removeNode("2.3"_s);
        m_fixture->manager()->reloadAllData();
        QCOMPARE(shown(), Ids{ab});
        QCOMPARE(text(), " A <i>and</i>  B , <i>without:</i>  D "_s);

        emit label()->linkActivated("off:2"_s);
        QCOMPARE(shown(), (Ids{ab, ac}));
        narrowing->require({4});
        QCOMPARE(text(), " A <i>and</i>  D "_s);
        QCOMPARE(shown(), Ids{abd});
        m_fixture->tree().saveAsNode();
        QCOMPARE(text(), " A <i>and</i>  D "_s);
        QCOMPARE(m_fixture->manager()->nodes().size(), 2);
        narrowing->exclude(2);
        m_fixture->tree().saveAsNode(); // below those of before
        QCOMPARE(text(), " A <i>and</i>  D , <i>without:</i>  B "_s);
        QCOMPARE(m_fixture->manager()->nodes().keys(), (QList<qint64>{1, 2, 3}));
        QVERIFY(m_fixture->tree().nodeById(3)->isInverted());
        QCOMPARE(m_fixture->tree().nodeById(3)->parentNode()->id(), 2);
        QCOMPARE(m_fixture->tree().currentNodeId(), 3);
        narrowing->takeOff(2);
        narrowing->exclude(1);
        QCOMPARE(text(), " D , <i>without:</i>  A "_s);
        QCOMPARE(shown(), Ids());
        emit label()->linkActivated("off:1"_s);
        emit label()->linkActivated("off:4"_s);
        QCOMPARE(text(), "All files"_s);
        QCOMPARE(shown(), (Ids{ab, abd, ac}));
    }

    void closingClears()
    {
        m_fixture->mainView().showTagsSelected({1});
        m_bar->setController(nullptr);
        QCOMPARE(heading(), QString());
        QCOMPARE(text(), "No tag or browsing node open"_s);
        m_fixture->mainView().showSpecialNode(AllFiles);
        QCOMPARE(text(), "No tag or browsing node open"_s);
    }

private:
    QString heading() const { return m_bar->findChild<QLabel *>("headingLabel"_s)->text(); }
    QLabel *label() const { return m_bar->findChild<QLabel *>("requirementsLabel"_s); }
    // Without the links of names and crosses.
    QString text() const
    {
        static const QRegularExpression links("<a [^>]*>&nbsp;\u00d7</a>|</?a[^>]*>"_s);
        return label()->text().remove(links);
    }

    std::unique_ptr<LocalCollection> m_fixture;
    std::unique_ptr<TitleWidget> m_bar;
};

QTEST_MAIN(TestTitleWidget)
#include "tst_titlewidget.moc"
