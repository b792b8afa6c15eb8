#include "fileops/contents/filechecksums.h"
#include "fileops/files/datachecksum.h"
#include "tests/support/database.h"

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

QByteArray randomBytes(int length, quint32 seed, int kinds = 256)
{
    QRandomGenerator random(seed);
    QByteArray bytes(length, '\0');
    for (char &byte : bytes)
        byte = static_cast<char>(random.bounded(kinds));
    return bytes;
}
} // namespace

class TestDataChecksum : public QObject
{
    Q_OBJECT

private slots:
    void givesKnownValues_data()
    {
        addColumns<QByteArray, quint32>("bytes", "expected");
        addRow("two bytes", QByteArray("ab"), 0x672U);
        addRow("bytes are unsigned", QByteArray("\xff"), 0xFFU);
        addRow("top bits come back 23 places down", QByteArray("\x10\0\0\0\0\0\0", 7), 0x20U);
        addRow("and move on from there", QByteArray("\x10\0\0\0\0\0\0\0", 8), 0x200U);
        for (int length = 0; length < 40; ++length) {
            const QByteArray bytes = randomBytes(length, quint32(length));
            QTest::addRow("%d random bytes", length) << bytes << defined(bytes);
        }
        for (const QByteArray &bytes :
             {randomBytes(1000003, 7), randomBytes(100001, 8, 16), QByteArray(5000, '\xff'),
              QByteArray(50, '\xff') + QByteArray(50, '\0'), QByteArray(5001, '\xf0')})
            QTest::addRow("%d bytes", bytes.size()) << bytes << defined(bytes);
    }

    void givesKnownValues()
    {
        QFETCH(QByteArray, bytes);
        QTEST(DataChecksum::ofBytes(bytes), "expected");
    }

    void isTheSameInSlices()
    {
        const QByteArray bytes = randomBytes(5000, 3);
        QRandomGenerator random(4);
        for (int round = 0; round < 200; ++round) {
            DataChecksum checksum;
            for (int place = 0, length = 0; place < bytes.size(); place += length) {
                length = qMin(random.bounded(300), bytes.size() - place);
                checksum.update(bytes.constData() + place, length);
            }
            QCOMPARE(checksum.take(), defined(bytes));
        }
    }

    void hashesStreamsSideBySide()
    {
        for (const std::vector<int> &lengths : {std::vector<int>{},
                                                {100},
                                                {5, 0, 100},
                                                {1000, 1000, 1000, 1000},
                                                {0, 0, 7, 0, 9, 0, 1, 0, 0, 300, 2, 0},
                                                {50000, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11},
                                                {900, 800, 700, 600, 500, 400, 300, 200, 100}}) {
            std::vector<DataChecksum> checksums(lengths.size());
            std::vector<QByteArray> contents;
            for (const int length : lengths)
                contents.push_back(randomBytes(length, quint32(contents.size())));
            std::vector<DataChecksum::Stream> streams;
            for (size_t i = 0; i < contents.size(); ++i) {
                checksums[i].update("before", 6);
                streams.push_back({&checksums[i], contents[i].constData(), contents[i].size()});
            }
            DataChecksum::updateAll(streams.data(), int(streams.size()));
            for (size_t i = 0; i < contents.size(); ++i)
                QCOMPARE(checksums[i].take(), defined("before" + contents[i]));
        }
    }

    void readsLinksAsLatin1()
    {
        QCOMPARE(DataChecksum::ofHyperlink("https://example.org/caf\u00e9"_s),
                 defined("https://example.org/caf\xe9"));
    }

    void readsFilesOfAllSizes()
    {
        const QVector<int> lengths = {0, 1, 2600, 262143, 262144, 262145, 524288, 1000000, 3, 0};
        const TestFolder folder;
        QStringList paths;
        QVector<QByteArray> contents;
        for (int i = 0; i < 150; ++i) {
            contents.append(randomBytes(lengths.value(i, i * 97), quint32(i)));
            paths.append(folder.write(QString::number(i), contents.last()));
        }
        const QString pipe = folder.filePath("pipe"_s);
        QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
        const QStringList unreadable{"/nowhere/at/all"_s, "/"_s, "/dev/zero"_s, pipe, "/dev/zero"_s};
        for (const QString &path : unreadable) {
            paths.insert(40, path);
            contents.insert(40, QByteArray());
        }
        const QVector<FileChecksum> results = FileChecksums::ofFiles(paths);
        QCOMPARE(results.size(), paths.size());
        for (int i = 0; i < paths.size(); ++i) {
            const FileChecksum single = FileChecksums::ofFile(paths.at(i));
            const bool isRead = !unreadable.contains(paths.at(i));
            QCOMPARE(results.at(i).isRead, isRead);
            QCOMPARE(single.isRead, isRead);
            if (!isRead)
                continue;
            QCOMPARE(results.at(i).checksum, defined(contents.at(i)));
            QCOMPARE(single.checksum, defined(contents.at(i)));
            QCOMPARE(results.at(i).size, qint64(contents.at(i).size()));
            QCOMPARE(results.at(i).modified, QFileInfo(paths.at(i)).lastModified().toSecsSinceEpoch());
        }
    }

    void endsWhenAsked()
    {
        const TestFolder folder;
        int asked = 0;
        const FileChecksum result = FileChecksums::ofFile(folder.write("large"_s, randomBytes(2000000, 1)),
                                                          [&asked] { return ++asked == 3; });
        QVERIFY(!result.isRead);
        QCOMPARE(asked, 3);
    }
};

QTEST_GUILESS_MAIN(TestDataChecksum)
#include "tst_datachecksum.moc"
