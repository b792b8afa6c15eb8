#include "models/sorter.h"
#include "tests/support/drags.h"
#include "tests/support/localcollection.h"
#include "ui/views/titlewidget.h"

#include <QDropEvent>
#include <QLabel>

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
        m_tagIds = {0};
        for (const char *name : {"A", "B", "C", "D"})
            m_tagIds << m_fixture->tags().addTag(QLatin1String(name));
    }

    void cleanup()
    {
        m_bar.reset();
        m_fixture.reset();
    }

    void tellsWhatIsShown_data()
    {
        using Numbers = QVector<int>;
        addColumns<int, Numbers, Numbers, Numbers, QString, QString>("type", "required", "eitherOr",
                                                                     "excluded", "heading", "text");
        const QString tags = "Tag Requirements:"_s;
        const auto row = [&tags](const char *name, const Numbers &required, const Numbers &eitherOr,
                                 const Numbers &excluded, const char *text) {
            addRow(name, 8, required, eitherOr, excluded, tags, QString::fromLatin1(text));
        };
        row("one tag", {1}, {}, {}, " A ");
        row("three tags", {1, 2, 3}, {}, {}, " A <i>and</i>  B <i>and</i>  C ");
        row("any of two", {}, {4, 1}, {}, "( D <i>or</i>  A )");
        row("two excluded", {}, {}, {2, 3}, "<i>without:</i>  B <i>or</i>  C ");
        row("required and excluded", {1}, {}, {2}, " A , <i>without:</i>  B ");
        row("all three groups", {1}, {2, 3}, {4}, " A <i>and</i> ( B <i>or</i>  C ), <i>without:</i>  D ");
        addRow("everything", 1, Numbers(), Numbers(), Numbers(), QString(), "All files"_s);
        addRow("no tag left", 8, Numbers(), Numbers(), Numbers(), QString(),
               "No tag or browsing node open"_s);
        addRow("unknown type", 9, Numbers(), Numbers(), Numbers(), QString(), QString());
    }

    void tellsWhatIsShown()
    {
        QFETCH(int, type);
        QFETCH(QString, heading);
        QFETCH(QString, text);
        const auto ids = [this](const QVector<int> &numbers) {
            QVector<qint64> found;
            for (int number : numbers)
                found << m_tagIds.at(number);
            return found;
        };
        QFETCH(QVector<int>, required);
        QFETCH(QVector<int>, eitherOr);
        QFETCH(QVector<int>, excluded);

        m_bar->setRequirements(NodeType(type), ids(required), ids(eitherOr), ids(excluded));
        QCOMPARE(this->heading(), heading);
        QCOMPARE(this->text(), text);
    }

    void namesAreNoMarkup()
    {
        const qint64 tagId = m_fixture->tags().addTag("a<b>&%1 \U0001F600"_s);
        m_fixture->mainView().showTagsSelected({tagId});
        QCOMPARE(text(), " a&lt;b&gt;&amp;%1 \U0001F600 "_s);
        m_fixture->tags().renameTag(tagId, "Z"_s);
        QCOMPARE(text(), " Z "_s);
    }

    void droppedTagsBecomeRequirement()
    {
        const qint64 both = m_fixture->addExternal("both"_s, {m_tagIds.at(1), m_tagIds.at(2)});
        m_fixture->addExternal("one"_s, {m_tagIds.at(1)});
        const auto data = tagDrag({m_tagIds.at(1), m_tagIds.at(2)});
        QDragEnterEvent enter({1, 1}, Qt::CopyAction, data.get(), Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(m_bar.get(), &enter);
        QVERIFY(enter.isAccepted());
        QDropEvent drop({1, 1}, Qt::CopyAction, data.get(), Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(m_bar.get(), &drop);
        QCOMPARE(text(), " A <i>and</i>  B "_s);
        QCOMPARE(m_fixture->mainView().shownFileIds(), QVector<qint64>{both});
        QCOMPARE(m_fixture->tags().selectedTagIds(), QVector<qint64>({m_tagIds.at(1), m_tagIds.at(2)}));
    }

    void foreignDragIsRefused()
    {
        QMimeData data;
        data.setData("vorna/TAGIDS"_s, QByteArray(4, 0));
        QDragEnterEvent enter({1, 1}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        enter.ignore();
        QApplication::sendEvent(m_bar.get(), &enter);
        QVERIFY(!enter.isAccepted());
    }

    void closingClears()
    {
        m_fixture->mainView().showTagsSelected({m_tagIds.at(1)});
        m_bar->setController(nullptr);
        QCOMPARE(heading(), QString());
        QCOMPARE(text(), "No tag or browsing node open"_s);
        m_fixture->mainView().showSpecialNode(AllFiles);
        QCOMPARE(text(), "No tag or browsing node open"_s);
    }

private:
    QString heading() const { return m_bar->findChild<QLabel *>("headingLabel"_s)->text(); }
    QString text() const { return m_bar->findChild<QLabel *>("requirementsLabel"_s)->text(); }

    std::unique_ptr<LocalCollection> m_fixture;
    std::unique_ptr<TitleWidget> m_bar;
    // The tags "A" to "D", counted from 1 as in the rows of the tests.
    QVector<qint64> m_tagIds;
};

QTEST_MAIN(TestTitleWidget)
#include "tst_titlewidget.moc"
