#include "fileops/datachecksum.h"
#include "tests/support/addingfixture.h"
#include "tests/support/serverdatabase.h"

#include <QCryptographicHash>

/** Making external files internal, on the worker and a real database. */
class TestFileTransfer : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase_data() { addBackEnds(); }

    void init()
    {
        std::unique_ptr<TestDatabase> database = makeTestDatabase();
        m_fixture = std::make_unique<AddingFixture>(std::move(database));
        m_fixture->write("z.bin"_s, "other");
    }
    void cleanup() { m_fixture.reset(); }

    void contentsComeOverByteForByte_data()
    {
        addColumns<int, int>("size", "blocks");
        addRow("empty", 0, 0);
        addRow("one byte", 1, 1);
        addRow("a full block", 10000000, 1);
        addRow("a byte more", 10000001, 2);
    }

    void contentsComeOverByteForByte()
    {
        QFETCH(int, size);
        QFETCH(int, blocks);
        const QByteArray bytes = contents(size);
        const QString path = m_fixture->write("it's %1.bin"_s, bytes);
        m_fixture->add({path, m_fixture->path("z.bin"_s)});
        QSignalSpy updated(&m_fixture->provider(), &FileOperationProvider::updatedFiles);
        m_fixture->provider().transferFiles({1, 1});
        m_fixture->wait();

        QCOMPARE(AddingFixture::idsOf(updated), QVector<qint64>{1});
        QCOMPARE(Sql::rows("SELECT internal, file_size, data_checksum FROM files WHERE file_id=1"_s),
                 QStringList{"1|%1|%2"_s.arg(size).arg(DataChecksum::ofBytes(bytes))});
        QCOMPARE(Sql::count("storage"_s), blocks);
        QCOMPARE(Sql::rows("SELECT path_id FROM file_paths"_s), QStringList{"2"_s});
        QCOMPARE(storedHash(), hash(bytes));
        QCOMPARE(hash(TestFolder::read(path)), hash(bytes));
        QCOMPARE(m_fixture->integrity(), "ok"_s);
    }

    void whatComesInBetween_data()
    {
        // What happens to the second file; which of the three are internal after; how many blocks there are.
        addColumns<QString, QString, int>("event", "internal", "blocks");
        addRow("gone before its turn", "vanish"_s, "1|0|1"_s, 2);
        addRow("canceled", "cancel"_s, "1|0|0"_s, 1);
        addRow("grown", "grow"_s, "1|0|1"_s, 2);
        addRow("cut short", "cut"_s, "1|0|1"_s, 2);
        addRow("gone, but read through its open end", "remove"_s, "1|1|1"_s, 8);
    }

    void whatComesInBetween()
    {
        QFETCH(QString, event);
        QFETCH(QString, internal);
        QFile file(m_fixture->write("b.bin"_s, contents(60000000)));
        m_fixture->add({m_fixture->write("a.bin"_s, "small"), file.fileName(), m_fixture->path("z.bin"_s)});
        FileOperationProvider &provider = m_fixture->provider();
        connect(&provider, &FileOperationProvider::filesOperationProgress, &provider,
                [&](const QString &text, int percent) {
                    if (text != "Transferring b.bin"_s || percent == 0)
                        return;
                    if (event == "cancel"_s)
                        provider.cancelOperations();
                    else if (event == "remove"_s)
                        file.remove();
                    else
                        file.resize(event == "grow"_s ? 60000001 : 59999999);
                });
        if (event == "vanish"_s)
            file.remove();
        QSignalSpy errors(&provider, &FileOperationProvider::error);
        provider.transferFiles({1, 2, 3, 99});
        m_fixture->wait();
        QCOMPARE(Sql::rows("SELECT internal FROM files ORDER BY file_id"_s).join(QLatin1Char('|')), internal);
        QCOMPARE(Sql::count("file_paths"_s), internal.count(QLatin1Char('0')));
        QTEST(Sql::count("storage"_s), "blocks");
        QTEST(Sql::count("storage_info"_s), "blocks");
        const bool isTold = event != "cancel"_s && event != "remove"_s;
        QCOMPARE(errors.count(), isTold ? 1 : 0);
        QVERIFY(!isTold || errors.first().first().toString().contains(file.fileName()));
    }

private:
    static QByteArray contents(int size)
    {
        QByteArray bytes(size, 'x');
        for (int i = 0; i < size; i += 97)
            bytes[i] = char(i / 97);
        return bytes;
    }
    static QByteArray hash(const QByteArray &bytes)
    {
        return QCryptographicHash::hash(bytes, QCryptographicHash::Sha256);
    }
    // Of the blocks of the first file, followed link by link.
    static QByteArray storedHash()
    {
        QCryptographicHash sum(QCryptographicHash::Sha256);
        QString id = Sql::value("SELECT storage_id FROM files WHERE file_id=1 AND file_size>0");
        while (id.toLongLong() > 0) {
            QSqlQuery block("SELECT data FROM storage WHERE storage_id="_s + id);
            sum.addData(block.next() ? block.value(0).toByteArray() : QByteArray());
            QSqlQuery next("SELECT continue_id FROM storage_info WHERE storage_id="_s + id);
            id = next.next() ? next.value(0).toString() : QString();
        }
        return sum.result();
    }

    std::unique_ptr<AddingFixture> m_fixture;
};

QTEST_MAIN(TestFileTransfer)
#include "tst_filetransfer.moc"
