#include "app/settings/addingsettings.h"
#include "app/settings/collectionidentity.h"
#include "app/settings/dbspecifierlackingpassword.h"
#include "app/settings/previewsettings.h"
#include "app/settings/settingsmender.h"
#include "app/settings/showntext.h"
#include "app/settings/viewsettings.h"
#include "app/settings/windowsettings.h"
#include "tests/support/settingssandbox.h"
#include "tests/support/text.h"

namespace {

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
    return DBDetails(2, "h"_s, 5432, "db"_s, "u"_s, password);
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
        bytes += QByteArray::fromHex(part);
    return bytes;
}

} // namespace

/** The forms in which connections are stored, and what a setting is when nothing is stored. */
class TestSettings : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        qRegisterMetaTypeStreamOperators<DBSpecifierLackingPassword>("DBSpecifierLackingPassword");
        qRegisterMetaTypeStreamOperators<QQueue<DBSpecifierLackingPassword>>(
            "QQueue<DBSpecifierLackingPassword>");
    }

    void init() { SettingsSandbox::clear(); }

    void detailsStream_data()
    {
        addColumns<DBDetails, QByteArray>("details", "bytes");
        addRow("server", server("p"_s), join({"00000002", h, "00001538", db, u, "00000002 0070"}));
        addRow("local", DBDetails::local("h"_s), join({"00000001", null, "00000000", h, null, null}));
        addRow("none", DBDetails(), join({"00000000", null, "00000000", null, null, null}));
    }

    void detailsStream()
    {
        QFETCH(DBDetails, details);
        QFETCH(QByteArray, bytes);
        QCOMPARE(bytesOf(details).toHex(), bytes.toHex());
        const DBDetails read = valueOf<DBDetails>(bytes);
        QCOMPARE(read, details);
        QCOMPARE(read.password(), details.password());
    }

    void specifierStream_data()
    {
        addColumns<DBDetails, QByteArray>("details", "bytes");
        // isNull, kind, path, then the server: isNull, host, port, name, user, password
        addRow("local", DBDetails::local("h"_s),
               join({"00", "0000", h, "01", null, "00000000", null, null, null}));
        addRow("server, its password dropped", server("secret"_s),
               join({"00", "0001", null, "00", h, "00001538", db, u, null}));
        addRow("none", DBDetails(), join({"01", "0000", null, "01", null, "00000000", null, null, null}));
    }

    void specifierStream()
    {
        QFETCH(DBDetails, details);
        QFETCH(QByteArray, bytes);
        const auto specifier = DBSpecifierLackingPassword::fromDetails(details);
        QCOMPARE(bytesOf(specifier).toHex(), bytes.toHex());
        const auto read = valueOf<DBSpecifierLackingPassword>(bytes);
        QVERIFY(read == specifier);
        QCOMPARE(read.toDetails().password(), QString());
        if (specifier.isNull())
            QCOMPARE(specifier.toString(), "No database specified"_s);
        else
            QCOMPARE(read.toDetails(), details);
    }

    void brokenEntriesAreNull()
    {
        for (const QByteArray &bytes : {join({"00", "0000", h, "00", h, "0000"}), QByteArray()}) {
            const auto read = valueOf<DBSpecifierLackingPassword>(bytes);
            QVERIFY(read.isNull());
            QCOMPARE(read.toDetails().type(), 0);
        }
    }

    void recentListLosesPasswords()
    {
        QQueue<DBDetails> databases;
        databases << DBDetails::local("/a.vrn"_s) << server("top secret"_s) << DBDetails();
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
    }

    void unknownKindIsLeftOut()
    {
        // A queue as the store holds it: the count, then the entries.
        const QByteArray server = join({"01", null, "00000000", null, null, null});
        const QByteArray bytes = join({"00000003", "00", "0002", h}) + server + join({"00", "0000", db}) +
                                 server + join({"00", "0007", h}) + server;
        const char *message = "ERROR deserialising DBSpecifier: Database specifier type not valid!\n";
        for (int i = 0; i < 2; ++i)
            QTest::ignoreMessage(QtDebugMsg, message);
        const auto queue = valueOf<QQueue<DBSpecifierLackingPassword>>(bytes);
        QCOMPARE(queue.size(), 3);
        QSettings().setValue("MainWindow/recentDatabases_DBSpecifier2"_s, QVariant::fromValue(queue));
        QCOMPARE(WindowSettings::recentDatabases(), QQueue<DBDetails>() << DBDetails::local("db"_s));
    }

    void valuesOfWrongTypeReadAsDefaults_data()
    {
        addColumns<QVariant>("value");
        addRow("a text", QVariant("soon, perhaps"_s));
        addRow("a list", QVariant(QStringList{"1"_s, "true"_s}));
        addRow("bytes", QVariant(QByteArray("\x01\x02")));
        addRow("below all bounds", QVariant(-5));
        addRow("above all bounds", QVariant(99999999999LL));
    }

    void valuesOfWrongTypeReadAsDefaults()
    {
        QFETCH(QVariant, value);
        QSettings store;
        for (const char *key :
             {"NewFiles/timeout", "ThumbnailCache/thumbnailCacheSize",
              "PreferencesDialog/slideshowIncrementTime", "PreferencesDialog/autoTagRecursionLimit",
              "PreferencesDialog/nodeSortingType", "MainWindow/recentDatabases_DBSpecifier2"})
            store.setValue(QString::fromUtf8(key), value);
        QCOMPARE(ViewSettings::newFilesTimeout(), 300U);
        QCOMPARE(ViewSettings::thumbnailCacheSize(), 400);
        QCOMPARE(ViewSettings::nodeSortingType(), 1);
        QCOMPARE(PreviewSettings::slideshowIncrementTime(), 7);
        QCOMPARE(AddingSettings::autoTagRecursionLimit(), 10000);
        QVERIFY(WindowSettings::recentDatabases().isEmpty());

        if (value.type() == QVariant::Int || value.type() == QVariant::LongLong)
            return;
        for (const char *key : {"PreferencesDialog/autoTagging", "PreferencesDialog/autoSaveRotated"})
            store.setValue(QString::fromUtf8(key), value);
        QVERIFY(AddingSettings::autoTagging() && !PreviewSettings::autoSaveRotated());
        if (value.type() == QVariant::String)
            return;
        store.setValue("MainWindow/lastDBdir"_s, value);
        QCOMPARE(WindowSettings::lastDatabaseDir("here"_s), "here"_s);
    }

    void unreadableValuesAreDropped_data()
    {
        // A list that tells of more entries than any memory holds, as the store writes one.
        const QByteArray list = "\"@Variant(\\0\\0\\0\\t\\x7f\\xff\\xff\\xff)\"\n";
        addColumns<QByteArray, QString, bool>("lines", "found", "isSetAside");
        addRow("one that is read", "lastDBdir=home\nshowIconView=" + list, "home"_s, false);
        addRow("all", "lastDBdir=" + list + "recentDatabases_DBSpecifier2=" + list, "here"_s, false);
        addRow("one that nobody reads", "lastDBdir=home\n[Other]\nstate=" + list, "home"_s, false);
        addRow("over two lines", "lastDBdir=home\nstate=" + QByteArray(list).replace("nt(", "nt\\\n("),
               "here"_s, true);
    }

    void unreadableValuesAreDropped()
    {
        QFETCH(QByteArray, lines);
        QFETCH(bool, isSetAside);
        QSettings().sync();
        QFile store(QSettings().fileName());
        QVERIFY(QDir().mkpath(QFileInfo(store).path()) && store.open(QIODevice::WriteOnly));
        store.write("[MainWindow]\n" + lines);
        store.close();
        QTEST(WindowSettings::lastDatabaseDir("here"_s), "found");
        QVERIFY(WindowSettings::recentDatabases().isEmpty() && WindowSettings::showIconView());
        QCOMPARE(QFile::remove(store.fileName() + ".damaged"_s), isSetAside);
        SettingsMender::run(); // as at each start
        WindowSettings::setLastDatabaseDir("there"_s);
        QSettings().sync();
        QCOMPARE(WindowSettings::lastDatabaseDir("here"_s), "there"_s);
    }

    void flagsReadAsTheyAreStored()
    {
        for (const QVariant &value : QVariantList{true, "false"_s, 1, "0"_s}) {
            QSettings().setValue("PreferencesDialog/autoTagging"_s, value);
            QCOMPARE(AddingSettings::autoTagging(), value.toBool());
        }
    }

    void damagedLayoutsAreLeftOut()
    {
        const QString key = "MainWindow/state"_s;
        const QByteArray state = QByteArray::fromHex("000000ff00000000fd");
        WindowSettings::setLayout(key, state);
        QCOMPARE(WindowSettings::layout(key), state);
        for (int i = 0; i < state.size(); ++i) {
            QByteArray damaged = state;
            damaged[i] = char(damaged.at(i) ^ 0x7f);
            QSettings().setValue(key, damaged);
            QVERIFY(WindowSettings::layout(key).isEmpty());
            QSettings().setValue(key, state.left(i));
            QVERIFY(WindowSettings::layout(key).isEmpty());
        }
        // Nor is one taken for that of another window, or from a version that wrote none.
        QSettings().setValue(key, state);
        QCOMPARE(WindowSettings::layout(key), state);
        QSettings().setValue("ListView/headers"_s, state);
        QSettings().setValue("ListView/headersChecksum"_s, QSettings().value(key + "Checksum"_s));
        QVERIFY(WindowSettings::layout("ListView/headers"_s).isEmpty());
        QSettings().remove(key + "Checksum"_s);
        QVERIFY(WindowSettings::layout(key).isEmpty());
    }

    void longTextsAreShownInPart()
    {
        const QString hundred = "0123456789"_s.repeated(10);
        QCOMPARE(ShownText::cut(hundred, 100), hundred);
        QCOMPARE(ShownText::cut(hundred, 11), "01234\u202656789"_s);
        // No half of a sign that takes two places stays alone.
        QCOMPARE(ShownText::cut("\U0001F600"_s.repeated(10), 11),
                 "\U0001F600"_s.repeated(2) + "\u2026"_s + "\U0001F600"_s.repeated(2));
        QCOMPARE(ShownText::cutLines(hundred + "\nshort\n"_s, 11), "01234\u202656789\nshort\n"_s);
        QCOMPARE(ShownText::breakable("a b "_s + hundred).count(QChar(0x200b)), 1);
        QCOMPARE(ShownText::toolTip("R&D"_s), "R&D"_s);
        QCOMPARE(ShownText::toolTip("<img src=\"x\">"_s), "<qt>&lt;img src=&quot;x&quot;&gt;</qt>"_s);
        QVERIFY(ShownText::toolTip(QString(1000000, QLatin1Char('<'))).size() < 10000);
    }

private:
    SettingsSandbox m_settings;
};

QTEST_GUILESS_MAIN(TestSettings)
#include "tst_settings.moc"
