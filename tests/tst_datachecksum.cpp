#include "fileops/datachecksum.h"
#include "fileops/filechecksums.h"
#include "tests/support/text.h"

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
    void givesKnownValues_data()
    {
        addColumns<QByteArray, quint32>("bytes", "expected");
        addRow("nothing", QByteArray(), 0U);
        addRow("one byte", QByteArray("a"), 0x61U);
        addRow("two bytes", QByteArray("ab"), 0x672U);
        addRow("bytes are unsigned", QByteArray("\xff"), 0xFFU);
        addRow("top bits come back 23 places down", QByteArray("\x10\0\0\0\0\0\0", 7), 0x20U);
        addRow("and move on from there", QByteArray("\x10\0\0\0\0\0\0\0", 8), 0x200U);
    }

    void givesKnownValues()
    {
        QFETCH(QByteArray, bytes);
        QTEST(DataChecksum::ofBytes(bytes), "expected");
    }

    void followsItsDefinition_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        for (int length = 0; length < 40; ++length)
            QTest::addRow("%d random bytes", length) << randomBytes(length, static_cast<quint32>(length));
        addRow("many random bytes", randomBytes(1000003, 7));
        addRow("small bytes", randomBytes(100001, 8, '\x0f'));
        addRow("all ones", QByteArray(5000, '\xff'));
        addRow("zeros after ones", QByteArray(50, '\xff') + QByteArray(50, '\0'));
        addRow("f0 all along", QByteArray(5001, '\xf0'));
    }

    void followsItsDefinition()
    {
        QFETCH(QByteArray, bytes);
        QCOMPARE(DataChecksum::ofBytes(bytes), defined(bytes));
        QVERIFY((DataChecksum::ofBytes(bytes) & 0xF0000000U) == 0);
    }

    void isTheSameInSlices()
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

    void hashesStreamsSideBySide_data()
    {
        QTest::addColumn<QVector<int>>("lengths");
        addRow("none", QVector<int>());
        addRow("one", QVector<int>{100});
        addRow("three", QVector<int>{5, 0, 100});
        addRow("four alike", QVector<int>{1000, 1000, 1000, 1000});
        addRow("empty ones among them", QVector<int>{0, 0, 7, 0, 9, 0, 1, 0, 0, 300, 2, 0});
        addRow("one long, many short", QVector<int>{50000, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11});
        addRow("falling", QVector<int>{900, 800, 700, 600, 500, 400, 300, 200, 100});
    }

    void hashesStreamsSideBySide()
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

    void readsLinksAsLatin1()
    {
        QCOMPARE(DataChecksum::ofHyperlink("https://example.org/caf\u00e9"_s),
                 defined("https://example.org/caf\xe9"));
    }

    void readsFilesOfAllSizes()
    {
        const QVector<int> lengths = {0, 1, 2600, 262143, 262144, 262145, 524288, 1000000, 3, 0};
        QTemporaryDir folder;
        QStringList paths;
        QVector<QByteArray> contents;
        for (int i = 0; i < 150; ++i) {
            contents.append(
                randomBytes(i < lengths.size() ? lengths.at(i) : i * 97, static_cast<quint32>(i)));
            paths.append(folder.filePath(QString::number(i)));
            QVERIFY(writeFile(paths.last(), contents.last()));
        }
        paths.insert(40, folder.filePath("missing"_s));
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

    void hasNoneForWhatCannotBeRead()
    {
        const QTemporaryDir folder;
        const QString pipe = folder.filePath("pipe"_s);
        QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
        const QStringList paths{"/nowhere/at/all"_s, "/"_s, "/dev/zero"_s, pipe, "/dev/zero"_s};
        for (const FileChecksum &result : FileChecksums::ofFiles(paths))
            QVERIFY(!result.isRead);
        for (const QString &path : paths)
            QVERIFY2(!FileChecksums::ofFile(path).isRead, qPrintable(path));
    }

    void endsWhenAsked()
    {
        QTemporaryDir folder;
        const QString path = folder.filePath("large"_s);
        QVERIFY(writeFile(path, randomBytes(2000000, 1)));
        int asked = 0;
        const FileChecksum result = FileChecksums::ofFile(path, [&asked] { return ++asked == 3; });
        QVERIFY(!result.isRead);
        QCOMPARE(asked, 3);
    }
};

QTEST_GUILESS_MAIN(TestDataChecksum)
#include "tst_datachecksum.moc"
