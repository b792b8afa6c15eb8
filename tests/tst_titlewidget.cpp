#include "app/constants.h"
#include "models/idlistmime.h"
#include "models/sorter.h"
#include "tests/support/filesfixture.h"
#include "ui/views/titlewidget.h"

#include <QDropEvent>
#include <QLabel>
#include <QMimeData>

/** The bar above the files: its words for each requirement, and tags that are dropped on it. */
class TestTitleWidget : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void tellsWhatIsShown_data();
    void tellsWhatIsShown();
    void namesAreNoMarkup();
    void newNameOfTagIsTold();
    void droppedTagsBecomeRequirement();
    void foreignDragIsRefused_data();
    void foreignDragIsRefused();
    void closingClears();

private:
    QString heading() const { return m_bar->findChild<QLabel *>(QStringLiteral("headingLabel"))->text(); }
    QString text() const { return m_bar->findChild<QLabel *>(QStringLiteral("requirementsLabel"))->text(); }

    std::unique_ptr<FilesFixture> m_fixture;
    std::unique_ptr<TitleWidget> m_bar;
    // The tags "A" to "D", counted from 1 as in the rows of the tests.
    QVector<qint64> m_tagIds;
};

void TestTitleWidget::init()
{
    m_fixture = std::make_unique<FilesFixture>();
    m_bar = std::make_unique<TitleWidget>();
    m_bar->setController(&m_fixture->mainView());
    m_tagIds = {0};
    for (const char *name : {"A", "B", "C", "D"})
        m_tagIds << m_fixture->tags().addTag(QLatin1String(name));
}

void TestTitleWidget::cleanup()
{
    m_bar.reset();
    m_fixture.reset();
}

void TestTitleWidget::tellsWhatIsShown_data()
{
    using Numbers = QVector<int>;
    QTest::addColumn<int>("type");
    QTest::addColumn<Numbers>("required");
    QTest::addColumn<Numbers>("eitherOr");
    QTest::addColumn<Numbers>("excluded");
    QTest::addColumn<QString>("heading");
    QTest::addColumn<QString>("text");
    const QString tags = QStringLiteral("Tag Requirements:");
    const auto row = [&tags](const char *name, const Numbers &required, const Numbers &eitherOr,
                             const Numbers &excluded, const char *text) {
        QTest::newRow(name) << 8 << required << eitherOr << excluded << tags << QString::fromLatin1(text);
    };
    row("one tag", {1}, {}, {}, " A ");
    row("three tags", {1, 2, 3}, {}, {}, " A <i>and</i>  B <i>and</i>  C ");
    row("any of one", {}, {4}, {}, " D ");
    row("any of two", {}, {4, 1}, {}, "( D <i>or</i>  A )");
    row("one excluded", {}, {}, {2}, "<i>without:</i>  B ");
    row("two excluded", {}, {}, {2, 3}, "<i>without:</i>  B <i>or</i>  C ");
    row("required and excluded", {1}, {}, {2}, " A , <i>without:</i>  B ");
    row("all three groups", {1}, {2, 3}, {4}, " A <i>and</i> ( B <i>or</i>  C ), <i>without:</i>  D ");
    QTest::newRow("everything") << 1 << Numbers() << Numbers() << Numbers() << QString()
                                << QStringLiteral("All files");
    QTest::newRow("no tag left") << 8 << Numbers() << Numbers() << Numbers() << QString()
                                 << QStringLiteral("No tag or browsing node open");
    QTest::newRow("unknown type") << 9 << Numbers() << Numbers() << Numbers() << QString() << QString();
}

void TestTitleWidget::tellsWhatIsShown()
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

void TestTitleWidget::namesAreNoMarkup()
{
    const qint64 tagId = m_fixture->tags().addTag(QStringLiteral("a<b>&%1 \U0001F600"));
    m_fixture->mainView().showTagsSelected({tagId});
    QCOMPARE(text(), QStringLiteral(" a&lt;b&gt;&amp;%1 \U0001F600 "));
}

void TestTitleWidget::newNameOfTagIsTold()
{
    m_fixture->mainView().showTagsSelected({m_tagIds.at(1)});
    m_fixture->tags().renameTag(m_tagIds.at(1), QStringLiteral("Z"));
    QCOMPARE(text(), QStringLiteral(" Z "));
}

void TestTitleWidget::droppedTagsBecomeRequirement()
{
    const qint64 both = m_fixture->addExternal(QStringLiteral("both"), {m_tagIds.at(1), m_tagIds.at(2)});
    m_fixture->addExternal(QStringLiteral("one"), {m_tagIds.at(1)});
    const std::unique_ptr<QMimeData> data(
        IdListMime::pack(Constants::tagMimeType, {m_tagIds.at(1), m_tagIds.at(2)}));

    QDragEnterEvent enter({1, 1}, Qt::CopyAction, data.get(), Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(m_bar.get(), &enter);
    QVERIFY(enter.isAccepted());
    QDropEvent drop({1, 1}, Qt::CopyAction, data.get(), Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(m_bar.get(), &drop);

    QCOMPARE(text(), QStringLiteral(" A <i>and</i>  B "));
    QCOMPARE(m_fixture->mainView().shownFileIds(), QVector<qint64>{both});
    QCOMPARE(m_fixture->tags().selectedTagIds(), QVector<qint64>({m_tagIds.at(1), m_tagIds.at(2)}));
}

void TestTitleWidget::foreignDragIsRefused_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("other letters") << QStringLiteral("vorna/TAGIDS") << QByteArray("\0\0\0\0", 4);
    QTest::newRow("files") << Constants::fileMimeType << QByteArray("\0\0\0\0", 4);
    QTest::newRow("text") << QStringLiteral("text/plain") << QByteArrayLiteral("A");
}

void TestTitleWidget::foreignDragIsRefused()
{
    QFETCH(QString, format);
    QFETCH(QByteArray, bytes);
    QMimeData data;
    data.setData(format, bytes);
    QDragEnterEvent enter({1, 1}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    enter.ignore();
    QApplication::sendEvent(m_bar.get(), &enter);
    QVERIFY(!enter.isAccepted());
}

void TestTitleWidget::closingClears()
{
    m_fixture->mainView().showTagsSelected({m_tagIds.at(1)});
    m_bar->setController(nullptr);
    QCOMPARE(heading(), QString());
    QCOMPARE(text(), QStringLiteral("No tag or browsing node open"));
    m_fixture->mainView().showSpecialNode(AllFiles);
    QCOMPARE(text(), QStringLiteral("No tag or browsing node open"));
}

QTEST_MAIN(TestTitleWidget)
#include "tst_titlewidget.moc"
