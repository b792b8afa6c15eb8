#include "fileops/idcodegenerator.h"
#include "fileops/sqlitefileoperationworker.h"
#include "tests/support/addingfixture.h"

namespace {
/** Knows but one code. */
class PoorWorker : public SqliteFileOperationWorker
{
public:
    using SqliteFileOperationWorker::SqliteFileOperationWorker;

protected:
    QString drawIdCode() const override { return "C1"_s; }
};

/** Draws each handle four times in turn. */
class RepeatingWorker : public SqliteFileOperationWorker
{
public:
    using SqliteFileOperationWorker::SqliteFileOperationWorker;
    QString drawIdCode() const override { return "BCDF"_s + QString::number(200 + m_draws++ / 4); }

private:
    mutable int m_draws = 0;
};

class RepeatingProvider : public SqliteFileOperationProvider
{
public:
    using SqliteFileOperationProvider::SqliteFileOperationProvider;

protected:
    FileOperationWorker *createWorker(const QString &connectionName) override
    {
        return new RepeatingWorker(connectionName, details(), constructor());
    }
};
} // namespace

class TestIdCode : public QObject
{
    Q_OBJECT

private slots:
    void usesAllItsLettersAndDigitsAndNoOthers()
    {
        const QRegularExpression form("^[BCDFGHJKLMNPRSTVWXYZ]{4}[2-9]{3}$"_s);
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

    void givesUpWhenNoCodeIsFree()
    {
        LocalDatabase database;
        QVERIFY(database.addFile(1, 2, 0, 0));
        QVERIFY(database.openWorkerConnection());
        PoorWorker worker(Constants::workerConnection, database.details(), database.constructor());
        QString code;
        QVERIFY(!worker.nextIdCode(code));
        worker.clearPrepared();
    }

    void usedIdCodesAreDrawnAgain()
    {
        AddingFixture fixture;
        for (int i = 0; i < 30; ++i)
            fixture.write("top/%1.txt"_s.arg(i), QByteArray::number(i));
        const SqliteQueryConstructor constructor;
        RepeatingProvider provider(&constructor, DBDetails::local(fixture.databasePath()), nullptr);
        QSignalSpy errors(&provider, &FileOperationProvider::errorOccured);
        QSignalSpy finished(&provider, &FileOperationProvider::finishedFilesOperation);
        provider.addFiles({fixture.path("top"_s)}, {}, false, 0);
        QTRY_COMPARE(finished.size(), 1);
        QCOMPARE(fixture.rows("SELECT count(*), count(DISTINCT id_code) FROM files"_s),
                 QStringList("30|30"_s));
        QCOMPARE(fixture.count("file_paths"_s), 30);
        QCOMPARE(errors.size(), 0);
    }
};

QTEST_GUILESS_MAIN(TestIdCode)
#include "tst_idcode.moc"
