#include "app/settings/constants.h"
#include "db/sql/databaselock.h"
#include "db/sql/sqltext.h"
#include "tests/support/text.h"

class TestSqlText : public QObject
{
    Q_OBJECT

private slots:
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

    void locksAreKnownByTheirCodes()
    {
        const auto isLock = [](const QString &driver, const char *code) {
            return DatabaseLock::isMetBy({{}, {}, QSqlError::StatementError, QLatin1String(code)}, driver);
        };
        // A time-out and a deadlock; busy and locked, each alone and with what SQLite adds.
        for (const char *code : {"55P03", "40P01"})
            QVERIFY2(isLock(Constants::postgresDriver, code), code);
        for (const char *code : {"5", "517", "6", "262"})
            QVERIFY2(isLock(Constants::sqliteDriver, code), code);
        QVERIFY(!isLock(Constants::postgresDriver, "57014") && !isLock(Constants::sqliteDriver, "11"));
    }
};

QTEST_APPLESS_MAIN(TestSqlText)
#include "tst_sqltext.moc"
