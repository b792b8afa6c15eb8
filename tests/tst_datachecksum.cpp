#include "fileops/datachecksum.h"
#include "fileops/filechecksums.h"

#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QtTest>

#include <sys/stat.h>

namespace {
/** The definition of the fingerprint, step by step. */
quint32 defined(const QByteArray &bytes)
{
    quint32 h = 0;
    for (const char byte : bytes) {
        h = (h << 4) + static_cast<uchar>(byte);
        const quint32 g = h & 0xF0000000U;
        if (g != 0)
            h = h ^ (g >> 23);
        h = h & ~g;
    }
    return h;
}

QByteArray randomBytes(int length, quint32 seed, char highest = '\xff')
{
    QRandomGenerator random(seed);
    QByteArray bytes(length, '\0');
    for (char &byte : bytes)
        byte = static_cast<char>(random.bounded(static_cast<uchar>(highest) + 1));
    return bytes;
}

/** Bytes that, against the state before each, carry as far up as can be. */
QByteArray carryingBytes(int length)
{
    QByteArray bytes;
    for (int i = 0; i < length; ++i) {
        const quint32 state = defined(bytes) << 4;
        bytes.append(
            static_cast<char>((state & 0xF0) == 0xF0 || i % 3 == 0 ? 0xFF : 0xF0 - (state & 0xF0) / 2));
    }
    return bytes;
}

bool writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}
} // namespace

class TestDataChecksum : public QObject
{
    Q_OBJECT

private slots:
    void givesKnownValues_data();
    void givesKnownValues();
    void followsItsDefinition_data();
    void followsItsDefinition();
    void isTheSameInSlices();
    void startsAnewAfterTake();
    void hashesStreamsSideBySide_data();
    void hashesStreamsSideBySide();
    void readsLinksAsLatin1();
    void readsFilesOfAllSizes();
    void readsFilesThatNameNoSize();
    void hasNoneForWhatCannotBeRead_data();
    void hasNoneForWhatCannotBeRead();
    void endsWhenAsked();
};

void TestDataChecksum::givesKnownValues_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<quint32>("expected");
    QTest::newRow("nothing") << QByteArray() << 0U;
    QTest::newRow("one byte") << QByteArray("a") << 0x61U;
    QTest::newRow("two bytes") << QByteArray("ab") << 0x672U;
    QTest::newRow("bytes are unsigned") << QByteArray("\xff") << 0xFFU;
    QTest::newRow("top bits come back 23 places down") << QByteArray("\x10\0\0\0\0\0\0", 7) << 0x20U;
    QTest::newRow("and move on from there") << QByteArray("\x10\0\0\0\0\0\0\0", 8) << 0x200U;
}

void TestDataChecksum::givesKnownValues()
{
    QFETCH(QByteArray, bytes);
    QTEST(DataChecksum::ofBytes(bytes), "expected");
}

void TestDataChecksum::followsItsDefinition_data()
{
    QTest::addColumn<QByteArray>("bytes");
    for (int length = 0; length < 40; ++length)
        QTest::addRow("%d random bytes", length) << randomBytes(length, static_cast<quint32>(length));
    QTest::newRow("many random bytes") << randomBytes(1000003, 7);
    QTest::newRow("small bytes") << randomBytes(100001, 8, '\x0f');
    QTest::newRow("all ones") << QByteArray(5000, '\xff');
    QTest::newRow("zeros after ones") << QByteArray(50, '\xff') + QByteArray(50, '\0');
    QTest::newRow("f0 all along") << QByteArray(5001, '\xf0');
    QTest::newRow("long carries") << carryingBytes(3000);
}

void TestDataChecksum::followsItsDefinition()
{
    QFETCH(QByteArray, bytes);
    QCOMPARE(DataChecksum::ofBytes(bytes), defined(bytes));
    QVERIFY((DataChecksum::ofBytes(bytes) & 0xF0000000U) == 0);
}

void TestDataChecksum::isTheSameInSlices()
{
    const QByteArray bytes = randomBytes(5000, 3);
    QRandomGenerator random(4);
    for (int round = 0; round < 200; ++round) {
        DataChecksum checksum;
        int place = 0;
        while (place < bytes.size()) {
            const int length = qMin(random.bounded(300), bytes.size() - place);
            checksum.update(bytes.constData() + place, length);
            place += length;
        }
        QCOMPARE(checksum.take(), defined(bytes));
    }
}

void TestDataChecksum::startsAnewAfterTake()
{
    DataChecksum checksum;
    checksum.update("abc", 3);
    checksum.take();
    checksum.update("xyz", 3);
    QCOMPARE(checksum.take(), defined("xyz"));
    QCOMPARE(checksum.take(), 0U);
}

void TestDataChecksum::hashesStreamsSideBySide_data()
{
    QTest::addColumn<QVector<int>>("lengths");
    QTest::newRow("none") << QVector<int>();
    QTest::newRow("one") << QVector<int>{100};
    QTest::newRow("three") << QVector<int>{5, 0, 100};
    QTest::newRow("four alike") << QVector<int>{1000, 1000, 1000, 1000};
    QTest::newRow("empty ones among them") << QVector<int>{0, 0, 7, 0, 9, 0, 1, 0, 0, 300, 2, 0};
    QTest::newRow("one long, many short") << QVector<int>{50000, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11};
    QTest::newRow("falling") << QVector<int>{900, 800, 700, 600, 500, 400, 300, 200, 100};
}

void TestDataChecksum::hashesStreamsSideBySide()
{
    QFETCH(QVector<int>, lengths);
    std::vector<QByteArray> contents;
    std::vector<DataChecksum> checksums(static_cast<size_t>(lengths.size()));
    for (int i = 0; i < lengths.size(); ++i)
        contents.push_back(randomBytes(lengths.at(i), static_cast<quint32>(i)));
    std::vector<DataChecksum::Stream> streams;
    for (size_t i = 0; i < contents.size(); ++i) {
        checksums[i].update("before", 6);
        streams.push_back({&checksums[i], contents[i].constData(), contents[i].size()});
    }
    DataChecksum::updateAll(streams.data(), static_cast<int>(streams.size()));
    for (size_t i = 0; i < contents.size(); ++i)
        QCOMPARE(checksums[i].take(), defined("before" + contents[i]));
}

void TestDataChecksum::readsLinksAsLatin1()
{
    QCOMPARE(DataChecksum::ofHyperlink(QStringLiteral("https://example.org/caf\u00e9")),
             defined("https://example.org/caf\xe9"));
}

void TestDataChecksum::readsFilesOfAllSizes()
{
    const QVector<int> lengths = {0, 1, 2600, 262143, 262144, 262145, 524288, 1000000, 3, 0};
    QTemporaryDir folder;
    QStringList paths;
    QVector<QByteArray> contents;
    for (int i = 0; i < 150; ++i) {
        contents.append(randomBytes(i < lengths.size() ? lengths.at(i) : i * 97, static_cast<quint32>(i)));
        paths.append(folder.filePath(QString::number(i)));
        QVERIFY(writeFile(paths.last(), contents.last()));
    }
    paths.insert(40, folder.filePath(QStringLiteral("missing")));
    contents.insert(40, QByteArray());

    const QVector<FileChecksum> results = FileChecksums::ofFiles(paths);
    QCOMPARE(results.size(), paths.size());
    for (int i = 0; i < paths.size(); ++i) {
        const FileChecksum single = FileChecksums::ofFile(paths.at(i));
        QCOMPARE(results.at(i).isRead, i != 40);
        QCOMPARE(single.isRead, i != 40);
        QCOMPARE(results.at(i).checksum, defined(contents.at(i)));
        QCOMPARE(single.checksum, defined(contents.at(i)));
        QCOMPARE(results.at(i).size, qint64(contents.at(i).size()));
        if (i != 40)
            QCOMPARE(results.at(i).modified, QFileInfo(paths.at(i)).lastModified().toSecsSinceEpoch());
    }
}

void TestDataChecksum::readsFilesThatNameNoSize()
{
    const QString path = QStringLiteral("/proc/version");
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray contents = file.readAll();
    QVERIFY(!contents.isEmpty());
    QCOMPARE(FileChecksums::ofFiles({path}).first().checksum, defined(contents));
    QCOMPARE(FileChecksums::ofFiles({path}).first().size, qint64(contents.size()));
}

void TestDataChecksum::hasNoneForWhatCannotBeRead_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("missing") << QStringLiteral("/nowhere/at/all");
    QTest::newRow("folder") << QStringLiteral("/");
    QTest::newRow("device") << QStringLiteral("/dev/zero");
    QTest::newRow("pipe") << QStringLiteral("pipe");
}

void TestDataChecksum::hasNoneForWhatCannotBeRead()
{
    QFETCH(QString, path);
    QTemporaryDir folder;
    if (path == QLatin1String("pipe")) {
        path = folder.filePath(path);
        QCOMPARE(::mkfifo(QFile::encodeName(path).constData(), 0600), 0);
    }
    QVERIFY(!FileChecksums::ofFile(path).isRead);
    const QVector<FileChecksum> results = FileChecksums::ofFiles({path, path});
    QCOMPARE(results.size(), 2);
    QVERIFY(!results.at(0).isRead && !results.at(1).isRead);
}

void TestDataChecksum::endsWhenAsked()
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("large"));
    QVERIFY(writeFile(path, randomBytes(2000000, 1)));
    int asked = 0;
    const FileChecksum result = FileChecksums::ofFile(path, [&asked] { return ++asked == 3; });
    QVERIFY(!result.isRead);
    QCOMPARE(asked, 3);
}

QTEST_GUILESS_MAIN(TestDataChecksum)
#include "tst_datachecksum.moc"
