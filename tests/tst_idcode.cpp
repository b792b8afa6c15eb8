#include "fileops/idcodegenerator.h"
#include "fileops/sqlitefileoperationworker.h"
#include "support/workerdatabase.h"

#include <QRegularExpression>
#include <QSet>
#include <QtTest>

namespace {
/** Draws from a list instead of by chance. */
class ListedWorker : public SqliteFileOperationWorker
{
public:
    using SqliteFileOperationWorker::SqliteFileOperationWorker;

    mutable QStringList drawn;

protected:
    QString drawIdCode() const override { return drawn.size() > 1 ? drawn.takeFirst() : drawn.first(); }
};
} // namespace

class TestIdCode : public QObject
{
    Q_OBJECT

private slots:
    void usesAllItsLettersAndDigitsAndNoOthers();
    void hardlyRepeats();
    void drawsAgainWhileTheCodeIsInUse();
    void givesUpWhenNoCodeIsFree();
};

void TestIdCode::usesAllItsLettersAndDigitsAndNoOthers()
{
    const QRegularExpression form(QStringLiteral("^[BCDFGHJKLMNPRSTVWXYZ]{4}[2-9]{3}$"));
    const IdCodeGenerator generator;
    QVector<QHash<QChar, int>> seen(7);
    const int rounds = 20000;
    for (int i = 0; i < rounds; ++i) {
        const QString code = generator.generate();
        QVERIFY2(form.match(code).hasMatch(), qPrintable(code));
        for (int place = 0; place < 7; ++place)
            ++seen[place][code.at(place)];
    }
    for (int place = 0; place < 7; ++place) {
        const int kinds = place < 4 ? 20 : 8;
        QCOMPARE(seen.at(place).size(), kinds);
        for (const int count : qAsConst(seen[place])) {
            // Far beyond what chance does, near enough to notice a skewed draw.
            QVERIFY(count > rounds / kinds * 8 / 10);
            QVERIFY(count < rounds / kinds * 12 / 10);
        }
    }
}

void TestIdCode::hardlyRepeats()
{
    const IdCodeGenerator generator;
    QSet<QString> codes;
    for (int i = 0; i < 10000; ++i)
        codes.insert(generator.generate());
    QVERIFY(codes.size() > 9980);
}

void TestIdCode::drawsAgainWhileTheCodeIsInUse()
{
    WorkerDatabase database;
    QVERIFY(database.addFile(1, 2, 0, 0));
    QVERIFY(database.addFile(2, 2, 0, 0));
    QVERIFY(database.openWorkerConnection());
    ListedWorker worker(Constants::workerConnection, database.details(), database.constructor());
    worker.drawn = QStringList{QStringLiteral("C1"), QStringLiteral("C2"), QStringLiteral("C1"),
                               QStringLiteral("FREE222")};
    QString code;
    QVERIFY(worker.nextIdCode(code));
    QCOMPARE(code, QStringLiteral("FREE222"));
    worker.clearPrepared();
}

void TestIdCode::givesUpWhenNoCodeIsFree()
{
    WorkerDatabase database;
    QVERIFY(database.addFile(1, 2, 0, 0));
    QVERIFY(database.openWorkerConnection());
    ListedWorker worker(Constants::workerConnection, database.details(), database.constructor());
    worker.drawn = QStringList{QStringLiteral("C1")};
    QString code;
    QVERIFY(!worker.nextIdCode(code));
    worker.clearPrepared();
}

QTEST_GUILESS_MAIN(TestIdCode)
#include "tst_idcode.moc"
