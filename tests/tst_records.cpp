#include "core/file.h"

#include <QSignalSpy>
#include <QtTest>

#include <memory>

namespace {

struct FileValues
{
    QString name = QStringLiteral("notes.txt");
    QString idCode = QStringLiteral("a1b2c3d");
    QString path = QStringLiteral("/home/me/notes.txt");
    QString relPath = QStringLiteral("../notes.txt");
    qint64 thumbnailId = 0;
    qint32 internal = 0;
};

std::unique_ptr<File> makeFile(const FileValues &values = {})
{
    return std::make_unique<File>(7, 120, 1600000000, 1500000000, 3, values.name, QStringLiteral("about"),
                                  values.idCode, values.path, values.relPath, 41, values.thumbnailId, 99,
                                  values.internal);
}

QVector<qint64> listOf(const QList<QVariant> &arguments)
{
    return arguments.at(0).value<QVector<qint64>>();
}

} // namespace

class TestRecords : public QObject
{
    Q_OBJECT

private slots:
    void derivesTypeAndIcon_data();
    void derivesTypeAndIcon();
    void derivesAgainAfterAReload();
    void storesAValueAndTells_data();
    void storesAValueAndTells();
    void passesOverOtherValues_data();
    void passesOverOtherValues();
    void keepsItsDateForAnInvalidOne();
    void namesAnUnknownValueInTheLog_data();
    void namesAnUnknownValueInTheLog();
    void givesItsPathsBack_data();
    void givesItsPathsBack();
    void keepsItsPathsWhenRenamed();
    void givesItsCodeBack_data();
    void givesItsCodeBack();
    void changesItsTags_data();
    void changesItsTags();
};

void TestRecords::derivesTypeAndIcon_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<qint32>("internal");
    QTest::addColumn<qint64>("thumbnailId");
    QTest::addColumn<QString>("type");
    QTest::addColumn<qint32>("iconKind");

    const auto row = [](const char *title, const char *name, qint32 internal, qint64 thumbnailId,
                        const char *type, qint32 iconKind) {
        QTest::newRow(title) << QString::fromUtf8(name) << internal << thumbnailId << QString::fromUtf8(type)
                             << iconKind;
    };
    row("plain text", "a.txt", 0, 0, ".txt", 0);
    row("only the last piece, in its own case", "archive.TAR.GZ", 1, 0, ".GZ", 0);
    row("no dot", "README", 1, 0, "", 0);
    row("no dot, with a thumbnail", "README", 1, 5, "", 0);
    row("dot at the end", "odd.", 0, 0, ".", 0);
    row("dot at the end, with a thumbnail", "odd.", 0, 5, ".", 6);
    row("dot at the start", ".pdf", 0, 0, ".pdf", 1);
    row("picture with a thumbnail", "a.PNG", 1, 5, ".PNG", 6);
    row("thumbnail id below zero", "a.png", 1, -1, ".png", 0);
    row("PDF beats its thumbnail", "a.PDF", 1, 5, ".PDF", 1);
    row("old document", "a.doc", 0, 0, ".doc", 2);
    row("new document", "a.DocX", 0, 0, ".DocX", 2);
    row("old sheet", "a.xls", 0, 0, ".xls", 3);
    row("new sheet is none of ours", "a.xlsx", 0, 0, ".xlsx", 0);
    row("mp4 stands with the sounds", "a.mp4", 0, 5, ".mp4", 4);
    row("mp3", "a.mp3", 0, 0, ".mp3", 4);
    row("wav", "a.wav", 0, 0, ".wav", 4);
    row("m4a", "a.m4a", 0, 0, ".m4a", 4);
    row("avi", "a.avi", 0, 0, ".avi", 5);
    row("wmv", "a.wmv", 0, 0, ".wmv", 5);
    row("mov", "a.mov", 0, 0, ".mov", 5);
    row("hyperlink", "https://example.org/a.pdf", 2, 5, "Hyperlink", 7);
    row("extension that only begins like ours", "a.pdfx", 0, 0, ".pdfx", 0);
}

void TestRecords::derivesTypeAndIcon()
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

void TestRecords::derivesAgainAfterAReload()
{
    const auto file = makeFile();
    QSignalSpy changes(file.get(), &File::dataChanged);
    file->setThumbnailId(12);
    file->setStorageId(13);
    file->setChecksumSilently(14);
    file->deriveType();

    QCOMPARE(changes.count(), 0);
    QCOMPARE(file->iconKind(), 6);
    QCOMPARE(file->data(StorageId).toLongLong(), 13);
    QCOMPARE(file->data(Checksum).toLongLong(), 14);

    file->setData(Name, QStringLiteral("README"));
    QCOMPARE(file->type(), QStringLiteral(".txt"));
    file->deriveType();
    QCOMPARE(file->type(), QString());
    QCOMPARE(file->iconKind(), 0);
}

void TestRecords::storesAValueAndTells_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QVariant>("stored");

    const auto row = [](const char *title, DataType type, const QVariant &value, const QVariant &stored) {
        QTest::newRow(title) << int(type) << value << stored;
    };
    const QDateTime date = QDateTime::fromSecsSinceEpoch(1234567890);
    const qint64 large = Q_INT64_C(5000000000);
    const QString text = QString::fromUtf8("100% \"it's\" \xf0\x9f\x98\x80\n");
    row("name", Name, text, text);
    row("name of a row with nulls", Name, QVariant(QVariant::String), QString());
    row("description", Description, text, text);
    row("description of a row with nulls", Description, QVariant(QVariant::String), QString());
    row("addition date", AdditionDate, date, date);
    row("modification date in seconds", ModificationDate, qint64(1234567890), date);
    row("size beyond 32 bits", Size, large, large);
    row("size of a row with nulls", Size, QVariant(QVariant::LongLong), qint64(0));
    row("load", LoadId, large, large);
    row("code", IdCode, QStringLiteral("zzzzzzz"), QStringLiteral("zzzzzzz"));
    row("type", Type, QStringLiteral(".odt"), QStringLiteral(".odt"));
    row("path", Path, QStringLiteral("/mnt/x/other.txt"), QStringLiteral("/mnt/x/other.txt"));
    row("path of a row with nulls", Path, QVariant(QVariant::String), QString());
    row("relative path", RelPath, QStringLiteral("x/notes.txt"), QStringLiteral("x/notes.txt"));
    row("kind", Internal, 1, 1);
}

void TestRecords::storesAValueAndTells()
{
    QFETCH(int, type);
    QFETCH(QVariant, value);
    const auto file = makeFile();
    QSignalSpy changes(file.get(), &File::dataChanged);

    file->setData(DataType(type), value);
    file->setData(DataType(type), value);

    QTEST(file->data(DataType(type)), "stored");
    QCOMPARE(changes.count(), 1);
    QCOMPARE(changes.at(0).at(0).value<DataType>(), DataType(type));
}

void TestRecords::passesOverOtherValues_data()
{
    QTest::addColumn<int>("type");
    QTest::newRow("picture") << int(Thumbnail);
    QTest::newRow("storage id") << int(StorageId);
    QTest::newRow("tags") << int(Tags);
    QTest::newRow("checksum") << int(Checksum);
    QTest::newRow("first unknown number") << 15;
    QTest::newRow("number below all") << -1;
}

void TestRecords::passesOverOtherValues()
{
    QFETCH(int, type);
    const auto file = makeFile();
    QSignalSpy changes(file.get(), &File::dataChanged);
    QSignalSpy tagChanges(file.get(), &File::fileTagsChanged);

    file->setData(DataType(type), 5);
    file->setData(DataType(type), QVariant::fromValue(QVector<qint64>{5}));

    QCOMPARE(changes.count() + tagChanges.count(), 0);
    QCOMPARE(file->storageId(), 41);
    QCOMPARE(file->checksum(), 99);
    QCOMPARE(file->thumbnailId(), 0);
    QVERIFY(file->tags().isEmpty());
}

void TestRecords::keepsItsDateForAnInvalidOne()
{
    const auto file = makeFile();
    QSignalSpy changes(file.get(), &File::dataChanged);
    file->setData(AdditionDate, QVariant());
    QCOMPARE(file->additionSeconds(), 1600000000);
    QCOMPARE(changes.count(), 0);
}

void TestRecords::namesAnUnknownValueInTheLog_data()
{
    QTest::addColumn<int>("type");
    QTest::newRow("picture") << 2;
    QTest::newRow("first unknown number") << 15;
}

void TestRecords::namesAnUnknownValueInTheLog()
{
    QFETCH(int, type);
    QTest::ignoreMessage(QtDebugMsg, "File::data(): Unknown data type!");
    QVERIFY(!makeFile()->data(DataType(type)).isValid());
}

void TestRecords::givesItsPathsBack_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("path");
    const auto row = [](const char *title, const char *name, const char *path) {
        QTest::newRow(title) << QString::fromUtf8(name) << QString::fromUtf8(path);
    };
    row("path that ends in the name", "a.txt", "/data/a.txt");
    row("path that only ends like the name", "a.txt", "/data/data.txt");
    row("file in the root", "a.txt", "/a.txt");
    row("nothing but the name", "a.txt", "a.txt");
    row("name shown differs", "My notes", "/data/a.txt");
    row("other separators", "a.txt", "C:\\data\\a.txt");
    row("no path", "a.txt", "");
    row("no name", "", "/data/");
    row("folder of the same name", "a", "/a/a");
    row("beyond ASCII", "\xc3\xa9t\xc3\xa9 \xf0\x9f\x98\x80.txt",
        "/caf\xc3\xa9/\xc3\xa9t\xc3\xa9 \xf0\x9f\x98\x80.txt");
}

void TestRecords::givesItsPathsBack()
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

void TestRecords::keepsItsPathsWhenRenamed()
{
    const auto file = makeFile();
    file->setData(Name, QStringLiteral("other.txt"));
    QCOMPARE(file->path(), QStringLiteral("/home/me/notes.txt"));
    QCOMPARE(file->relPath(), QStringLiteral("../notes.txt"));

    file->setData(Path, QStringLiteral("/home/me/other.txt"));
    file->setData(Name, QStringLiteral("third.txt"));
    QCOMPARE(file->path(), QStringLiteral("/home/me/other.txt"));
}

void TestRecords::givesItsCodeBack_data()
{
    QTest::addColumn<QString>("code");
    QTest::newRow("our own") << QStringLiteral("a1b2c3d");
    QTest::newRow("none") << QString();
    QTest::newRow("eight characters") << QStringLiteral("a1b2c3d4");
    QTest::newRow("nine characters") << QStringLiteral("a1b2c3d4e");
    QTest::newRow("beyond ASCII") << QString::fromUtf8("\xc3\xa9\xe2\x82\xac");
    QTest::newRow("with a zero") << QString(QLatin1String("a\0b", 3));
}

void TestRecords::givesItsCodeBack()
{
    QFETCH(QString, code);
    FileValues values;
    values.idCode = code;
    const auto file = makeFile(values);
    QCOMPARE(file->idCode(), code);

    for (const QString &next : {QStringLiteral("longer than a code"), QStringLiteral("x"), code}) {
        file->setData(IdCode, next);
        QCOMPARE(file->idCode(), next);
    }
}

void TestRecords::changesItsTags_data()
{
    using Tags = QVector<qint64>;
    using Change = void (*)(File &);
    QTest::addColumn<quintptr>("change");
    QTest::addColumn<Tags>("result");
    const auto row = [](const char *title, Change change, const Tags &result) {
        QTest::newRow(title) << reinterpret_cast<quintptr>(change) << result;
    };
    const Tags unchanged{1, 2, 3};
    row("clear", [](File &file) { file.clearTags(); }, {});
    row("add", [](File &file) { file.addTag(9); }, {1, 2, 3, 9});
    row(
        "add a present one", [](File &file) { file.addTag(2); }, unchanged);
    row("remove", [](File &file) { file.removeTag(2); }, {1, 3});
    row(
        "remove an absent one", [](File &file) { file.removeTag(9); }, unchanged);
    row("add many", [](File &file) { file.addTags({8, 9}); }, {1, 2, 3, 8, 9});
    row(
        "add none", [](File &file) { file.addTags({}); }, unchanged);
    row("remove many", [](File &file) { file.removeTags({3, 9, 1}); }, {2});
    row(
        "remove none", [](File &file) { file.removeTags({}); }, unchanged);
    row(
        "remove strangers",
        [](File &file) {
            file.removeTags({8, 9});
        },
        unchanged);
    row("set", [](File &file) { file.setTags({3, 4}); }, {3, 4});
    row("set in another order", [](File &file) { file.setTags({3, 2, 1}); }, {3, 2, 1});
    row(
        "set the same",
        [](File &file) {
            file.setTags({1, 2, 3});
        },
        unchanged);
}

void TestRecords::changesItsTags()
{
    QFETCH(quintptr, change);
    QFETCH(QVector<qint64>, result);
    const auto file = makeFile();
    const QVector<qint64> before{1, 2, 3};
    file->setTags(before);
    QSignalSpy changes(file.get(), &File::fileTagsChanged);

    reinterpret_cast<void (*)(File &)>(change)(*file);

    QCOMPARE(file->tags(), result);
    QCOMPARE(changes.count(), result == before ? 0 : 1);
    if (!changes.isEmpty())
        QCOMPARE(listOf(changes.at(0)), result);
}

QTEST_GUILESS_MAIN(TestRecords)
#include "tst_records.moc"
