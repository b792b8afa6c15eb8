#include "db/sql/sqltext.h"
#include "tests/support/text.h"

class TestSqlText : public QObject
{
    Q_OBJECT

private slots:
    void quotes_data()
    {
        addColumns<QString, QString>("value", "quoted");
        addRow("plain", "abc"_s, "'abc'"_s);
        addRow("empty", QString(), "''"_s);
        addRow("apostrophe", "O'Neil"_s, "'O''Neil'"_s);
        addRow("only apostrophes", "''"_s, "''''''"_s);
        addRow("double quote stays", "12\" disc"_s, "'12\" disc'"_s);
        addRow("backslash stays", "a\\'b"_s, "'a\\''b'"_s);
        addRow("percent stays", "50%1"_s, "'50%1'"_s);
    }

    void quotes()
    {
        QFETCH(QString, value);
        QFETCH(QString, quoted);
        QCOMPARE(SqlText::quoted(value), quoted);
        QCOMPARE(SqlText::escaped(value), quoted.mid(1, quoted.size() - 2));
    }

    void fillsPlaces_data()
    {
        addColumns<QString, QStringList, QString>("templateText", "values", "text");
        const QStringList two{"A"_s, "B"_s};
        QStringList eleven;
        for (int i = 1; i <= 11; ++i)
            eleven.append("<%1>"_s.arg(i));

        addRow("in order", "%1,%2"_s, two, "A,B"_s);
        addRow("repeated and turned", "%2%1%2"_s, two, "BAB"_s);
        addRow("value holds a place", "'%1' '%2'"_s, QStringList{"%2"_s, "%1%%"_s}, "'%2' '%1%%'"_s);
        addRow("place without a value", "%1 %3 %2"_s, two, "A %3 B"_s);
        addRow("two digits", "%11%1"_s, eleven, "<11><1>"_s);
        addRow("no place", "LIKE '%a%' %0 100%"_s, two, "LIKE '%a%' %0 100%"_s);
        addRow("doubled sign", "%%1"_s, two, "%A"_s);
        addRow("letter behind", "%1_%2_seq"_s, two, "A_B_seq"_s);
        addRow("empty value", "[%1]"_s, QStringList{QString()}, "[]"_s);
    }

    void fillsPlaces()
    {
        QFETCH(QString, templateText);
        QFETCH(QStringList, values);
        QTEST(SqlText::fill(templateText, values), "text");
    }

    void listsIds()
    {
        const QVector<qint64> ids{3, -1, Q_INT64_C(9223372036854775807)};
        QCOMPARE(SqlText::idList(ids), "3,-1,9223372036854775807"_s);
        QCOMPARE(SqlText::idTexts(ids).join(QLatin1Char(',')), SqlText::idList(ids));
        QVERIFY(SqlText::idList({}).isEmpty());
    }
};

QTEST_APPLESS_MAIN(TestSqlText)
#include "tst_sqltext.moc"
