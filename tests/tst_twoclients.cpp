#include "db/manager/postgresdbmanager.h"
#include "fileops/worker/fileoperationtypes.h"
#include "tests/support/clientrecords.h"
#include "tests/support/serverdatabase.h"
#include "tests/support/settingssandbox.h"

#include <QApplication>
#include <QProcess>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTextStream>

namespace {
constexpr int steps = 250; // a row

/** A program on the server: it edits by chance and says what it shows. */
class Client
{
public:
    explicit Client(const DBDetails &details)
        : m_manager(Constants::postgresDriver, details.databaseName(), details.host(), details.user(), {},
                    details.port())
    {
        registerRecordTypes();
        registerFileOperationTypes();
        if (m_manager.openDB().isValid())
            qFatal("the server cannot be reached");
        m_manager.loadBrowsingTrees();
        m_manager.setCurrentBrowsingTree(0);
        m_manager.loadAllFiles();
        m_manager.loadAllTags();
        m_manager.loadAllGroups();
        m_manager.loadAllRelationNodes();
    }

    /** One guarded edit; how often it warned. */
    int edit(quint32 seed)
    {
        QSignalSpy warnings(&m_manager, &DatabaseManger::showTempWarning);
        QSignalSpy reloads(&m_manager, &DatabaseManger::allDataReloaded);
        m_random.seed(seed);
        change(m_random.bounded(20));
        const auto runZeroTimers = [] {
            for (int i = 0; i < 3; ++i)
                QCoreApplication::processEvents();
        };
        runZeroTimers();
        if (!QTest::qWaitFor([this] { return !m_manager.isBusy(); }, 60000))
            return -1;
        runZeroTimers();
        return reloads.isEmpty() ? warnings.size() : -1;
    }

    QStringList shown() { return ClientRecords::shown(m_manager); }

private:
    template <class Container>
    auto oneOf(const Container &items)
    {
        return items.at(m_random.bounded(items.size()));
    }
    /** Some of the items, one at least. */
    QVector<qint64> some(const QList<qint64> &items)
    {
        QVector<qint64> chosen = {oneOf(items)};
        for (const qint64 item : items) {
            if (chosen.size() < 5 && !chosen.contains(item) && m_random.bounded(6) == 0)
                chosen.append(item);
        }
        return chosen;
    }
    QList<qint64> tagIds() const
    {
        QList<qint64> ids;
        for (const TableRowData *tag : m_manager.tags())
            ids.append(tag->value("tag_id"_s).toLongLong());
        return ids;
    }
    QString newName()
    {
        static const QStringList names = {"it's"_s, "\\"_s, "100%1"_s, "\"; --"_s,
                                          "'); DELETE FROM tags; --"_s};
        return oneOf(names) + QString::number(m_random.bounded(100000));
    }

    void change(int kind)
    {
        const QList<qint64> tags = tagIds();
        const QList<qint64> files = m_manager.files().keys();
        const QList<qint64> nodes = m_manager.nodes().keys();
        const QList<qint64> groups = m_manager.groups()->keys();
        const bool isEven = m_random.bounded(2) == 0;
        const bool isRare = m_random.bounded(4) == 0;
        QStringList places(QString{});
        for (const auto &place : qAsConst(m_manager.relationNodes()))
            places.append(place.first);
        if (kind < 3 || tags.isEmpty())
            m_manager.addTag(newName(), files.isEmpty() ? QVector<qint64>() : some(files));
        else if (kind < 6 || files.isEmpty())
            m_manager.addFiles({"https://example.org/"_s + newName(), "https://example.org/"_s + newName()},
                               some(tags), false, 0);
        else if (kind < 8 || nodes.isEmpty())
            m_manager.addNodesBelow(some(tags), nodes.isEmpty() ? 0 : oneOf(nodes));
        else if (kind < 9 || groups.isEmpty())
            m_manager.addGroup(newName(), true);
        else if (kind == 9)
            m_manager.renameTag(oneOf(tags), newName());
        else if (kind == 10)
            m_manager.changeTagDescription(oneOf(tags), newName());
        else if (kind == 11)
            m_manager.removeTags({oneOf(tags)});
        else if (kind == 12)
            m_manager.setGroupTags(oneOf(groups), some(tags));
        else if (kind == 13)
            isRare ? m_manager.removeGroups({oneOf(groups)})
                   : m_manager.renameGroup(oneOf(groups), newName());
        else if (kind == 14)
            m_manager.addNodesAbove(some(tags).mid(0, 2), oneOf(nodes));
        else if (kind == 15)
            m_manager.updateNode(oneOf(nodes), isEven ? "inverted"_s : "tr_options"_s,
                                 isRare ? "1"_s : "0"_s);
        else if (kind == 16)
            void(isRare ? m_manager.removeNodes({oneOf(nodes)})
                        : m_manager.removeNodesKeepingChildren(some(nodes)));
        else if (kind == 17)
            void(isRare ? void(m_manager.removeRelations({oneOf(places)}))
                        : void(m_manager.addRelations(oneOf(places), some(tags).mid(0, 2))));
        else if (kind == 18)
            void(isEven ? m_manager.linkTags(some(files), some(tags))
                        : m_manager.unlinkTags(some(files), some(tags)));
        else
            isEven ? m_manager.deleteFiles(some(files))
                   : void(m_manager.updateFile(oneOf(files), "file_name"_s, newName()));
    }

    PostgresDBManager m_manager;
    QRandomGenerator m_random;
};

/** The life of a client's process: an answer goes out in a line, a seed comes in one. */
int runClient(const QStringList &arguments)
{
    const SettingsSandbox settings;
    Client client(
        DBDetails(2, arguments.at(2), arguments.at(3).toInt(), arguments.at(4), arguments.at(5), {}));
    QTextStream in(stdin);
    QTextStream out(stdout);
    QString seed = "no edit"_s;
    for (; !seed.isNull(); seed = in.readLine()) {
        out << (seed == "no edit"_s ? 0 : client.edit(seed.toUInt())) << ' '
            << client.shown().join(QLatin1Char('\n')).toUtf8().toBase64() << '\n';
        out.flush();
    }
    return 0;
}
} // namespace

/** Two programs that edit one database in turn: each sees what the other did, and no edit is lost. */
class TestTwoClients : public QObject
{
    Q_OBJECT

private slots:
    void randomEditsInTurn_data()
    {
        QTest::addColumn<uint>("seed");
        // Rows rather than one long walk: each has its own time limit.
        for (const uint seed : {11U, 12U, 13U, 14U})
            QTest::addRow("seed %u", seed) << seed;
    }

    void randomEditsInTurn()
    {
        QFETCH(uint, seed);
        if (!ServerDatabase::isAvailable())
            QSKIP("VORNA_TEST_PG names no server");
        ServerDatabase server;
        QProcess clients[2];
        for (QProcess &client : clients)
            client.start(QCoreApplication::applicationFilePath(),
                         {"client"_s, server.details().host(), QString::number(server.details().port()),
                          server.details().databaseName(), server.details().user()});
        QStringList shown[2];
        for (int i : {0, 1})
            QCOMPARE(answer(clients[i], shown[i]), 0);
        QRandomGenerator random(seed);
        const auto chance = [&random] { return QByteArray::number(random.bounded(1000000)); };
        int who = 0;
        int warned = 0;
        int gone = 0;
        QByteArray edited = chance();
        for (int step = 0; step < steps; ++step) {
            const QString before = stamp();
            int warnings = edit(clients[who], edited, shown[who]);
            QVERIFY(warnings == 0 || warnings == 1);
            warned += warnings;
            QCOMPARE(shown[who], ClientRecords::truth());
            // The other one's edit goes on beside it, or is dropped; what it missed is shown either way.
            const bool isNews = stamp() != before;
            warnings = edit(clients[1 - who], chance(), shown[1 - who]);
            QVERIFY(warnings == 0 || (warnings == 1 && isNews));
            warned += warnings;
            gone += int(isNews && warnings == 0);
            const QString place = "step %1, seed %2"_s.arg(step).arg(QLatin1String(edited));
            QVERIFY2(shown[1 - who] == ClientRecords::truth(), qPrintable(place));
            who = random.bounded(2);
            edited = chance();
        }
        QVERIFY(warned > 0);
        QVERIFY(gone > steps / 2);
        QVERIFY(shown[0].size() > 10);
        for (QProcess &client : clients) {
            client.closeWriteChannel();
            QVERIFY(client.waitForFinished());
        }
    }

private:
    static QString stamp() { return Sql::value("SELECT max(last_date) FROM tables_modification_date"); }

    /** Has a client edit, and takes what it shows then; how often it warned. */
    static int edit(QProcess &client, const QByteArray &seed, QStringList &shown)
    {
        client.write(seed + '\n');
        return answer(client, shown);
    }

    static int answer(QProcess &client, QStringList &shown)
    {
        while (!client.canReadLine()) {
            if (!client.waitForReadyRead())
                return -2;
        }
        const QList<QByteArray> answer = client.readLine().trimmed().split(' ');
        const QByteArray lines = QByteArray::fromBase64(answer.value(1));
        shown = lines.isEmpty() ? QStringList() : QString::fromUtf8(lines).split(QLatin1Char('\n'));
        return answer.first().toInt();
    }
};

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    if (application.arguments().value(1) == "client"_s)
        return runClient(application.arguments());
    TestTwoClients test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_twoclients.moc"
