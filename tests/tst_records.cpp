#include "core/file.h"
#include "core/recordtypes.h"
#include "core/tbnode.h"
#include "core/textpool.h"
#include "tests/support/text.h"

#include <memory>

namespace {

struct FileValues
{
    QString name = "notes.txt"_s;
    QString idCode = "a1b2c3d"_s;
    QString path = "/home/me/notes.txt"_s;
    QString relPath = "../notes.txt"_s;
    qint64 thumbnailId = 0;
    qint32 internal = 0;
};

std::unique_ptr<File> makeFile(const FileValues &values = {})
{
    return std::make_unique<File>(7, 120, 1600000000, 1500000000, 3, values.name, "about"_s, values.idCode,
                                  values.path, values.relPath, 41, values.thumbnailId, 99, values.internal);
}

} // namespace

class TestRecords : public QObject
{
    Q_OBJECT

private slots:
    void derivesTypeAndIcon_data()
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
        row("a.xlsx", 0, 0, ".xlsx", 0);
        row("a.mp4", 0, 5, ".mp4", 4);
        row("https://example.org/a.pdf", 2, 5, "Hyperlink", 7);
        row("a.pdfx", 0, 0, ".pdfx", 0);
    }

    void derivesTypeAndIcon()
    {
        QFETCH(QString, name);
        QFETCH(qint32, internal);
        QFETCH(qint64, thumbnailId);
        FileValues values;
        values.name = name;
        values.internal = internal;
        values.thumbnailId = thumbnailId;

        const auto file = makeFile(values);

        QTEST(file->type(), "type");
        QTEST(file->iconKind(), "iconKind");
    }

    void tellsOfChangedTags()
    {
        const auto file = makeFile();
        file->setTags({1, 2, 3});
        QSignalSpy changes(file.get(), &File::fileTagsChanged);
        file->addTag(2);
        file->addTags({});
        file->removeTags({8, 9});
        file->setTags({1, 2, 3});
        QCOMPARE(changes.count(), 0);
        file->addTags({8, 9});
        file->removeTags({3, 9, 7, 1});
        QCOMPARE(changes.count(), 2);
        QCOMPARE(changes.at(1).at(0).value<QVector<qint64>>(), (QVector<qint64>{2, 8}));
        QCOMPARE(file->tags(), (QVector<qint64>{2, 8}));
    }

    void givesItsPathsBack_data()
    {
        addColumns<QString, QString>("name", "path");
        const auto row = [](const char *title, const char *name, const char *path) {
            addRow(title, QString::fromUtf8(name), QString::fromUtf8(path));
        };
        row("path that ends in the name", "a.txt", "/data/a.txt");
        row("path that only ends like the name", "a.txt", "/data/data.txt");
        row("file in the root", "a.txt", "/a.txt");
        row("name shown differs", "My notes", "/data/a.txt");
        row("other separators", "a.txt", "C:\\data\\a.txt");
        row("no path", "a.txt", "");
        row("no name", "", "/data/");
        row("beyond ASCII", "\xc3\xa9t\xc3\xa9 \xf0\x9f\x98\x80.txt",
            "/caf\xc3\xa9/\xc3\xa9t\xc3\xa9 \xf0\x9f\x98\x80.txt");
    }

    void givesItsPathsBack()
    {
        QFETCH(QString, name);
        QFETCH(QString, path);
        FileValues values;
        values.name = name;
        values.path = path;
        values.relPath = path;
        const auto file = makeFile(values);
        QCOMPARE(file->path(), path);
        QCOMPARE(file->relPath(), path);
    }

    void keepsItsPathsWhenRenamed()
    {
        const auto file = makeFile();
        file->setData(Name, "other.txt"_s);
        QCOMPARE(file->path(), "/home/me/notes.txt"_s);
        QCOMPARE(file->relPath(), "../notes.txt"_s);

        file->setData(Path, "/home/me/other.txt"_s);
        file->setData(Name, "third.txt"_s);
        QCOMPARE(file->path(), "/home/me/other.txt"_s);
    }

    void givesItsCodeBack_data()
    {
        QTest::addColumn<QString>("code");
        addRow("our own", "a1b2c3d"_s);
        addRow("none", QString());
        addRow("nine characters", "a1b2c3d4e"_s);
        addRow("beyond ASCII", "\xc3\xa9\xe2\x82\xac"_s);
        addRow("with a zero", QString(QLatin1String("a\0b", 3)));
    }

    void givesItsCodeBack()
    {
        QFETCH(QString, code);
        FileValues values;
        values.idCode = code;
        const auto file = makeFile(values);
        QCOMPARE(file->idCode(), code);

        for (const QString &next : {"longer than a code"_s, "x"_s, code}) {
            file->setData(IdCode, next);
            QCOMPARE(file->idCode(), next);
        }
    }

    void sharesTextsThatAreInUse()
    {
        TextPool pool;
        const QString first = pool.share("/data/pictures/"_s);
        pool.share("/data/"_s);
        const QString second = pool.share("/data/pictures/"_s);
        QCOMPARE(second, "/data/pictures/"_s);
        QVERIFY(first.constData() == second.constData());
        QCOMPARE(pool.size(), 2);
        QVERIFY(pool.share(QString()).isNull());
    }

    void forgetsTextsThatNobodyUses()
    {
        TextPool pool;
        const QString kept = pool.share("kept"_s);
        for (int i = 0; i < 20000; ++i)
            pool.share(QString::number(i));
        QVERIFY2(pool.size() <= 4096, qPrintable(QString::number(pool.size())));
        QVERIFY(pool.share("kept"_s).constData() == kept.constData());
    }

    void mapKeepsKeyOrderWhateverTheOrderOfInsertion()
    {
        TextMap map;
        for (const qint64 key : {5, 9, 1, 7, 9, 12, 3, 12})
            map.insert(key, QString::number(key));
        QCOMPARE(map.keys(), (QList<qint64>{1, 3, 5, 7, 9, 12}));
        for (auto item = map.begin(); item != map.end(); ++item)
            QCOMPARE(item.value(), QString::number(item.key()));
        QVERIFY(map.find(7) != map.end());
        QVERIFY(map.find(8) == map.end());
    }
};

QTEST_GUILESS_MAIN(TestRecords)
#include "tst_records.moc"
