#include "app/addingsettings.h"
#include "app/collectionidentity.h"
#include "app/dbspecifierlackingpassword.h"
#include "app/viewsettings.h"
#include "app/windowsettings.h"
#include "tests/support/settingssandbox.h"

#include <QSettings>
#include <QTest>

namespace {

QByteArray hex(const char *text)
{
    return QByteArray::fromHex(text);
}

template <class Value>
QByteArray bytesOf(const Value &value)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << value;
    return bytes;
}

template <class Value>
Value valueOf(const QByteArray &bytes)
{
    QDataStream stream(bytes);
    Value value;
    stream >> value;
    return value;
}

DBDetails server(const QString &password = QString())
{
    return DBDetails(2, QStringLiteral("h"), 5432, QStringLiteral("db"), QStringLiteral("u"), password);
}

// Texts as a stream has them: the length in bytes, then UTF-16; a null one is ffffffff, an empty one
// 00000000.
const char *const h = "00000002 0068";
const char *const db = "00000004 00640062";
const char *const u = "00000002 0075";
const char *const null = "ffffffff";

QByteArray join(const QList<const char *> &parts)
{
    QByteArray bytes;
    for (const char *part : parts)
        bytes += hex(part);
    return bytes;
}

} // namespace

/** The forms in which connections are stored, and what a setting is when nothing is stored. */
class TestSettings : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init() { SettingsSandbox::clear(); }
    void detailsStream_data();
    void detailsStream();
    void specifierStream_data();
    void specifierStream();
    void brokenEntriesAreNull_data();
    void brokenEntriesAreNull();
    void equality_data();
    void equality();
    void texts();
    void recentListLosesPasswords();
    void unknownKindIsLeftOut();
    void defaults();
    void valuesOfWrongTypeReadAsDefaults();
    void versionIsNoted();

private:
    SettingsSandbox m_settings;
};

void TestSettings::initTestCase()
{
    qRegisterMetaTypeStreamOperators<DBSpecifierLackingPassword>("DBSpecifierLackingPassword");
    qRegisterMetaTypeStreamOperators<QQueue<DBSpecifierLackingPassword>>(
        "QQueue<DBSpecifierLackingPassword>");
}

void TestSettings::detailsStream_data()
{
    QTest::addColumn<DBDetails>("details");
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("server") << server(QStringLiteral("p"))
                            << join({"00000002", h, "00001538", db, u, "00000002 0070"});
    QTest::newRow("local") << DBDetails::local(QStringLiteral("h"))
                           << join({"00000001", null, "00000000", h, null, null});
    QTest::newRow("none") << DBDetails() << join({"00000000", null, "00000000", null, null, null});
}

void TestSettings::detailsStream()
{
    QFETCH(DBDetails, details);
    QFETCH(QByteArray, bytes);
    QCOMPARE(bytesOf(details).toHex(), bytes.toHex());
    const DBDetails read = valueOf<DBDetails>(bytes);
    QCOMPARE(read, details);
    QCOMPARE(read.port(), details.port());
    QCOMPARE(read.password(), details.password());
}

void TestSettings::specifierStream_data()
{
    QTest::addColumn<DBDetails>("details");
    QTest::addColumn<QByteArray>("bytes");
    // isNull, kind, path, then the server: isNull, host, port, name, user, password
    QTest::newRow("local") << DBDetails::local(QStringLiteral("h"))
                           << join({"00", "0000", h, "01", null, "00000000", null, null, null});
    QTest::newRow("server, its password dropped")
        << server(QStringLiteral("secret")) << join({"00", "0001", null, "00", h, "00001538", db, u, null});
    QTest::newRow("none") << DBDetails()
                          << join({"01", "0000", null, "01", null, "00000000", null, null, null});
    QTest::newRow("unknown type") << DBDetails(3, QStringLiteral("h"), 1, QStringLiteral("db"), {}, {})
                                  << join({"01", "0000", null, "01", null, "00000000", null, null, null});
}

void TestSettings::specifierStream()
{
    QFETCH(DBDetails, details);
    QFETCH(QByteArray, bytes);
    const auto specifier = DBSpecifierLackingPassword::fromDetails(details);
    QCOMPARE(bytesOf(specifier).toHex(), bytes.toHex());
    const auto read = valueOf<DBSpecifierLackingPassword>(bytes);
    QVERIFY(read == specifier);
    QCOMPARE(read.toDetails().password(), QString());
    if (!specifier.isNull())
        QCOMPARE(read.toDetails(), details);
}

void TestSettings::brokenEntriesAreNull_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("isLogged");
    QTest::newRow("kind 2") << join({"00", "0002", h, "01", null, "00000000", null, null, null}) << true;
    QTest::newRow("kind -1") << join({"00", "ffff", h, "01", null, "00000000", null, null, null}) << true;
    QTest::newRow("cut short") << join({"00", "0000", h, "00", h, "0000"}) << false;
    QTest::newRow("nothing") << QByteArray() << false;
}

void TestSettings::brokenEntriesAreNull()
{
    QFETCH(QByteArray, bytes);
    QFETCH(bool, isLogged);
    if (isLogged) {
        QTest::ignoreMessage(QtDebugMsg,
                             "ERROR deserialising DBSpecifier: Database specifier type not valid!\n");
    }
    const auto read = valueOf<DBSpecifierLackingPassword>(bytes);
    QVERIFY(read.isNull());
    QVERIFY(read.server().isNull);
    QCOMPARE(read.server().port, 0);
    QCOMPARE(read.toDetails().type(), 0);
}

void TestSettings::equality_data()
{
    QTest::addColumn<DBDetails>("left");
    QTest::addColumn<DBDetails>("right");
    QTest::addColumn<bool>("equal");
    const auto local = [](const char *path) { return DBDetails::local(QString::fromUtf8(path)); };
    const auto other = [](const char *host, int port, const char *name, const char *user) {
        return DBDetails(2, QString::fromUtf8(host), port, QString::fromUtf8(name), QString::fromUtf8(user),
                         {});
    };
    QTest::newRow("paths") << local("/a") << local("/a") << true;
    QTest::newRow("case of a path") << local("/a") << local("/A") << false;
    QTest::newRow("a local one has no host")
        << local("/a") << DBDetails(1, QStringLiteral("h"), 9, QStringLiteral("/a"), QStringLiteral("u"), {})
        << true;
    QTest::newRow("password") << server(QStringLiteral("a")) << server(QStringLiteral("b")) << true;
    QTest::newRow("host") << server() << other("i", 5432, "db", "u") << false;
    QTest::newRow("port") << server() << other("h", 5433, "db", "u") << false;
    QTest::newRow("name") << server() << other("h", 5432, "dc", "u") << false;
    QTest::newRow("user") << server() << other("h", 5432, "db", "v") << false;
    QTest::newRow("kind") << local("db") << other("", 0, "db", "") << false;
}

void TestSettings::equality()
{
    QFETCH(DBDetails, left);
    QFETCH(DBDetails, right);
    QFETCH(bool, equal);
    QCOMPARE(left == right, equal);
    QCOMPARE(left != right, !equal);
    QCOMPARE(DBSpecifierLackingPassword::fromDetails(left) == DBSpecifierLackingPassword::fromDetails(right),
             equal);
}

void TestSettings::texts()
{
    const DBDetails local = DBDetails::local(QStringLiteral("/x/%1 'y'.vrn"));
    using Specifier = DBSpecifierLackingPassword;
    QCOMPARE(Specifier().toString(), QStringLiteral("No database specified"));
    QCOMPARE(Specifier::fromDetails(local).toString(), QStringLiteral("'/x/%1 'y'.vrn'"));
    QCOMPARE(Specifier::fromDetails(server()).toString(), QStringLiteral("h:5432, db"));
    QCOMPARE(OldDBDetails().toString(), QStringLiteral("OldDBDetails(NULL)"));
    QCOMPARE(CollectionIdentity::description(local), Specifier::fromDetails(local).toString());
    QCOMPARE(CollectionIdentity::displayText(local), QStringLiteral("/x/%1 'y'.vrn"));
    QCOMPARE(CollectionIdentity::description(server()), QStringLiteral("h:5432, db"));
    QCOMPARE(CollectionIdentity::shortName(server()), QStringLiteral("h_db"));
    QCOMPARE(CollectionIdentity::description(DBDetails()), QStringLiteral("No database specified"));
}

void TestSettings::recentListLosesPasswords()
{
    QQueue<DBDetails> databases;
    databases << DBDetails::local(QStringLiteral("/a.vrn")) << server(QStringLiteral("top secret"))
              << DBDetails();
    WindowSettings::setRecentDatabases(databases);
    QSettings().sync();
    QFile store(QSettings().fileName());
    QVERIFY(store.open(QIODevice::ReadOnly));
    const QByteArray bytes = store.readAll();
    QVERIFY(bytes.contains("recentDatabases_DBSpecifier2"));
    QVERIFY(!bytes.contains("secret") && !bytes.contains("s\\0\\x65\\0\\x63"));

    const QQueue<DBDetails> read = WindowSettings::recentDatabases();
    QCOMPARE(read.size(), 2);
    QCOMPARE(read.first(), databases.first());
    QCOMPARE(read.last(), server());
    QCOMPARE(read.last().password(), QString());
}

void TestSettings::unknownKindIsLeftOut()
{
    // A queue as the store holds it: the count, then the entries.
    const QByteArray bytes =
        join({"00000003", "00",   "0002", h,    "01",       null,       "00000000", null, null, null,
              "00",       "0000", db,     "01", null,       "00000000", null,       null, null, "00",
              "0007",     h,      "01",   null, "00000000", null,       null,       null});
    const char *message = "ERROR deserialising DBSpecifier: Database specifier type not valid!\n";
    QTest::ignoreMessage(QtDebugMsg, message);
    QTest::ignoreMessage(QtDebugMsg, message);
    const auto queue = valueOf<QQueue<DBSpecifierLackingPassword>>(bytes);
    QCOMPARE(queue.size(), 3);
    QSettings().setValue(QStringLiteral("MainWindow/recentDatabases_DBSpecifier2"),
                         QVariant::fromValue(queue));
    QCOMPARE(WindowSettings::recentDatabases(), QQueue<DBDetails>()
                                                    << DBDetails::local(QStringLiteral("db")));
}

void TestSettings::defaults()
{
    QVERIFY(AddingSettings::duplicateManagementEnabled());
    QVERIFY(AddingSettings::listDuplicates());
    QVERIFY(!AddingSettings::checkForNameDuplicates());
    QVERIFY(AddingSettings::autoTagging());
    QVERIFY(AddingSettings::createNodes());
    QVERIFY(AddingSettings::autoTagRecursionLimitSet());
    QCOMPARE(AddingSettings::autoTagRecursionLimit(), 10000);
    QVERIFY(AddingSettings::linkToFiles());
    QCOMPARE(AddingSettings::lastFileAddDir(QStringLiteral("/given")), QStringLiteral("/given"));
    QCOMPARE(ViewSettings::newFilesTimeout(), 300U);
    QCOMPARE(ViewSettings::thumbnailCacheSize(), 400);
    QCOMPARE(ViewSettings::nodeSortingType(), int(ViewSettings::ManualSorting));
    QVERIFY(!ViewSettings::asksForNodePlace());
    QCOMPARE(WindowSettings::lastDatabaseDir(QStringLiteral("/given")), QStringLiteral("/given"));
    QVERIFY(WindowSettings::showIconView());
    QVERIFY(!WindowSettings::isFileSearchLineVisible());
    QVERIFY(!WindowSettings::isEditModeActivated());
    QVERIFY(WindowSettings::recentDatabases().isEmpty());
    QCOMPARE(WindowSettings::layout(WindowSettings::mainWindowState), QByteArray());
    QVERIFY(QSettings().allKeys().isEmpty());
}

void TestSettings::valuesOfWrongTypeReadAsDefaults()
{
    QSettings store;
    store.setValue(QStringLiteral("NewFiles/timeout"), QStringLiteral("soon"));
    store.setValue(QStringLiteral("ThumbnailCache/thumbnailCacheSize"), -5);
    store.setValue(QStringLiteral("MainWindow/recentDatabases_DBSpecifier2"), QStringLiteral("/old.vrn"));
    store.setValue(QStringLiteral("MainWindow/geometry"), 17);
    QCOMPARE(ViewSettings::newFilesTimeout(), 300U);
    QCOMPARE(ViewSettings::thumbnailCacheSize(), 1);
    QVERIFY(WindowSettings::recentDatabases().isEmpty());
}

void TestSettings::versionIsNoted()
{
    const auto different = [] {
        return QSettings().value(QStringLiteral("lastVersionDifferent")).toString();
    };
    QCOMPARE(WindowSettings::lastVersionUsed(), QString());
    QVERIFY(WindowSettings::noteVersion(QStringLiteral("4.1.3")));
    QCOMPARE(WindowSettings::lastVersionUsed(), QStringLiteral("4.1.3"));
    QCOMPARE(different(), QStringLiteral("true"));
    QVERIFY(!WindowSettings::noteVersion(QStringLiteral("4.1.3")));
    QCOMPARE(different(), QStringLiteral("false"));
    // Also a step back counts.
    QVERIFY(WindowSettings::noteVersion(QStringLiteral("4.1.2")));
    QCOMPARE(WindowSettings::lastVersionUsed(), QStringLiteral("4.1.2"));
}

QTEST_GUILESS_MAIN(TestSettings)
#include "tst_settings.moc"
