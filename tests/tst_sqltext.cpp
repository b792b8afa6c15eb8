#include "db/sqltext.h"

#include <QtTest>

class TestSqlText : public QObject
{
    Q_OBJECT

private slots:
    void quotes_data();
    void quotes();
    void fillsPlaces_data();
    void fillsPlaces();
    void listsIds();
};

void TestSqlText::quotes_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("quoted");
    QTest::newRow("plain") << QStringLiteral("abc") << QStringLiteral("'abc'");
    QTest::newRow("empty") << QString() << QStringLiteral("''");
    QTest::newRow("apostrophe") << QStringLiteral("O'Neil") << QStringLiteral("'O''Neil'");
    QTest::newRow("only apostrophes") << QStringLiteral("''") << QStringLiteral("''''''");
    QTest::newRow("double quote stays") << QStringLiteral("12\" disc") << QStringLiteral("'12\" disc'");
    QTest::newRow("backslash stays") << QStringLiteral("a\\'b") << QStringLiteral("'a\\''b'");
    QTest::newRow("percent stays") << QStringLiteral("50%1") << QStringLiteral("'50%1'");
}

void TestSqlText::quotes()
{
    QFETCH(QString, value);
    QFETCH(QString, quoted);
    QCOMPARE(SqlText::quoted(value), quoted);
    QCOMPARE(SqlText::escaped(value), quoted.mid(1, quoted.size() - 2));
}

void TestSqlText::fillsPlaces_data()
{
    QTest::addColumn<QString>("templateText");
    QTest::addColumn<QStringList>("values");
    QTest::addColumn<QString>("text");
    const QStringList two{QStringLiteral("A"), QStringLiteral("B")};
    QStringList eleven;
    for (int i = 1; i <= 11; ++i)
        eleven.append(QStringLiteral("<%1>").arg(i));

    QTest::newRow("in order") << QStringLiteral("%1,%2") << two << QStringLiteral("A,B");
    QTest::newRow("repeated and turned") << QStringLiteral("%2%1%2") << two << QStringLiteral("BAB");
    QTest::newRow("value holds a place")
        << QStringLiteral("'%1' '%2'") << QStringList{QStringLiteral("%2"), QStringLiteral("%1%%")}
        << QStringLiteral("'%2' '%1%%'");
    QTest::newRow("place without a value") << QStringLiteral("%1 %3 %2") << two << QStringLiteral("A %3 B");
    QTest::newRow("two digits") << QStringLiteral("%11%1") << eleven << QStringLiteral("<11><1>");
    QTest::newRow("no place") << QStringLiteral("LIKE '%a%' %0 100%") << two
                              << QStringLiteral("LIKE '%a%' %0 100%");
    QTest::newRow("doubled sign") << QStringLiteral("%%1") << two << QStringLiteral("%A");
    QTest::newRow("letter behind") << QStringLiteral("%1_%2_seq") << two << QStringLiteral("A_B_seq");
    QTest::newRow("empty value") << QStringLiteral("[%1]") << QStringList{QString()} << QStringLiteral("[]");
}

void TestSqlText::fillsPlaces()
{
    QFETCH(QString, templateText);
    QFETCH(QStringList, values);
    QFETCH(QString, text);
    QCOMPARE(SqlText::fill(templateText, values), text);
}

void TestSqlText::listsIds()
{
    const QVector<qint64> ids{3, -1, Q_INT64_C(9223372036854775807)};
    QCOMPARE(SqlText::idList(ids), QStringLiteral("3,-1,9223372036854775807"));
    QCOMPARE(SqlText::idTexts(ids).join(QLatin1Char(',')), SqlText::idList(ids));
    QVERIFY(SqlText::idList({}).isEmpty());
}

QTEST_APPLESS_MAIN(TestSqlText)
#include "tst_sqltext.moc"
