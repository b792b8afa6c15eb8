#include "core/records/file.h"
#include "core/records/groupitem.h"
#include "core/records/recordtypes.h"
#include "core/records/textpool.h"
#include "tests/support/text.h"

#include <memory>

namespace {
std::unique_ptr<File> makeFile(const QString &name, const QString &path = {}, const QString &code = {},
                               qint32 internal = 0, qint64 thumbnailId = 0)
{
    return std::make_unique<File>(7, 120, 1600000000, 1500000000, 3, name, "about"_s, code, path, path, 41,
                                  thumbnailId, 99, internal);
}
} // namespace

/** What a file's record packs together, and the texts and maps that records are kept in. */
class TestRecords : public QObject
{
    Q_OBJECT

private slots:
    void groupTellsOfItsTags()
    {
        GroupItem group(1, "group"_s, {1, 2, 3}, false);
        QSignalSpy changes(&group, &GroupItem::groupTagsChanged);
        QVERIFY(!group.removeTag(9) && !group.addTag(3));
        QCOMPARE(changes.count(), 0);
        QVERIFY(group.removeTag(2) && group.addTag(9));
        QCOMPARE(changes.count(), 2);
        QCOMPARE(changes.last().at(0).value<QVector<qint64>>(), (QVector<qint64>{1, 3, 9}));
    }

    void typeAndIcon_data()
    {
        addColumns<QString, qint32, qint64, QString, qint32>("name", "internal", "thumbnailId", "type",
                                                             "iconKind");
        const auto row = [](const char *name, qint32 internal, qint64 thumbnailId, const char *type,
                            qint32 iconKind) {
            QTest::addRow("%s, thumbnail %d", name, int(thumbnailId))
                << QString::fromUtf8(name) << internal << thumbnailId << QString::fromUtf8(type) << iconKind;
        };
        row("archive.TAR.GZ", 1, 0, ".GZ", 0);
        row("README", 1, 0, "", 0);
        row("odd.", 0, 0, ".", 0);
        row(".pdf", 0, 0, ".pdf", 1);
        row("a.PNG", 1, 5, ".PNG", 6);
        row("a.png", 1, -1, ".png", 0);
        row("a.PDF", 1, 5, ".PDF", 1);
        row("a.DocX", 0, 0, ".DocX", 2);
        row("a.mp4", 0, 5, ".mp4", 4);
        row("https://example.org/a.pdf", 2, 5, "Hyperlink", 7);
        row("a.pdfx", 0, 0, ".pdfx", 0);
    }

    void typeAndIcon()
    {
        QFETCH(QString, name);
        QFETCH(qint32, internal);
        QFETCH(qint64, thumbnailId);
        const auto file = makeFile(name, {}, {}, internal, thumbnailId);
        QTEST(file->type(), "type");
        QTEST(file->iconKind(), "iconKind");
    }

    void changedTags()
    {
        const auto file = makeFile("a"_s);
        file->setTags({1, 2, 3});
        QSignalSpy changes(file.get(), &File::fileTagsChanged);
        file->addTag(2);
        file->removeTags({8, 9});
        file->setTags({1, 2, 3});
        QCOMPARE(changes.count(), 0);
        file->addTags({8, 9});
        file->addTag(4);
        file->removeTag(9);
        file->removeTags({3, 9, 7, 1});
        QCOMPARE(changes.count(), 4);
        QCOMPARE(changes.last().at(0).value<QVector<qint64>>(), (QVector<qint64>{2, 8, 4}));
        QCOMPARE(file->tags(), (QVector<qint64>{2, 8, 4}));
        QSignalSpy values(file.get(), &File::dataChanged);
        for (const DataType type : {Description, Description, Size})
            file->setData(type, 5);
        QCOMPARE(values.count(), 2);
        QCOMPARE(values.last().at(0).value<DataType>(), Size);
    }

    void pathsAndCodes_data()
    {
        addColumns<QString, QString, QString>("name", "path", "code");
        addRow("path that ends in the name", "a.txt"_s, "/data/a.txt"_s, "a1b2c3d"_s);
        addRow("path that only ends like the name", "a.txt"_s, "/data/data.txt"_s, QString());
        addRow("file in the root", "a.txt"_s, "/a.txt"_s, "nine char"_s);
        addRow("name shown differs", "My notes"_s, "/data/a.txt"_s, "é€"_s);
        addRow("other separators", "a.txt"_s, "C:\\data\\a.txt"_s, QString(QLatin1String("a\0b", 3)));
        addRow("no path", "a.txt"_s, QString(), QString());
        addRow("no name", QString(), "/data/"_s, QString());
        addRow("beyond ASCII", "été 😀.txt"_s, "/café/été 😀.txt"_s, QString());
    }

    void pathsAndCodes()
    {
        QFETCH(QString, name);
        QFETCH(QString, path);
        QFETCH(QString, code);
        const auto file = makeFile(name, path, code);
        for (const QString &newName : {name, "other.txt"_s}) {
            file->setData(Name, newName);
            QCOMPARE(file->path(), path);
            QCOMPARE(file->relPath(), path);
        }
        file->setData(Path, "/home/me/other.txt"_s);
        file->setData(Name, "third.txt"_s);
        QCOMPARE(file->path(), "/home/me/other.txt"_s);
        QCOMPARE(file->idCode(), code);
        for (const QString &next : {"longer than a code"_s, "x"_s, code}) {
            file->setData(IdCode, next);
            QCOMPARE(file->idCode(), next);
        }
    }

    void textsInUseAreShared()
    {
        TextPool pool;
        const QString kept = pool.share("/data/pictures/"_s);
        QVERIFY(pool.share(QString()).isNull());
        for (int i = 0; i < 20000; ++i)
            pool.share(QString::number(i));
        QVERIFY2(pool.size() <= 4096, qPrintable(QString::number(pool.size())));
        QVERIFY(pool.share("/data/pictures/"_s).constData() == kept.constData());
    }

    void mapKeepsTheOrderOfKeys()
    {
        TextMap map;
        for (const qint64 key : {5, 9, 1, 7, 9, 12, 3, 12})
            map.insert(key, QString::number(key));
        QCOMPARE(map.keys(), (QList<qint64>{1, 3, 5, 7, 9, 12}));
        for (auto item = map.begin(); item != map.end(); ++item)
            QCOMPARE(item.value(), QString::number(item.key()));
        QVERIFY(map.find(7) != map.end() && map.find(8) == map.end());
    }
};

QTEST_GUILESS_MAIN(TestRecords)
#include "tst_records.moc"
