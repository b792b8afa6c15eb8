#include "db/manager/postgresdbmanager.h"
#include "fileops/worker/fileoperationtypes.h"
#include "tests/support/clientrecords.h"
#include "tests/support/serverdatabase.h"
#include "tests/support/settingssandbox.h"

#include <QApplication>
#include <QDateTime>
#include <QElapsedTimer>
#include <QProcess>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTextStream>
#include <QTimer>

namespace {
constexpr int sharedTags = 200;
constexpr int sharedFiles = 500;
constexpr int mostSecondsBehind = 1;

/** A program that edits by chance every two seconds or so, or only looks, and writes down what came of it. */
class Client : public QObject
{
public:
    Client(const DBDetails &details, const QString &name)
        : m_manager(Constants::postgresDriver, details.databaseName(), details.host(), details.user(), {},
                    details.port()),
          m_name(name),
          m_out(stdout),
          m_random(quint32(qHash(name)))
    {
        registerRecordTypes();
        registerFileOperationTypes();
        connect(&m_manager, &DatabaseManger::tagsAdded, this, &Client::noteDelay);
        connect(&m_manager, &DatabaseManger::showTempWarning, this,
                [this](const QString &, const QString &text) { m_warning = text; });
        connect(&m_manager, &DatabaseManger::errorOccured, this,
                [this](const QSqlError &error) { say("error"_s, error.text()); });
        if (m_manager.openDB().isValid())
            qFatal("the server cannot be reached");
        m_manager.reloadAllData();
    }

    void say(const QString &word, const QString &text)
    {
        m_out << word << ' ' << text << '\n';
        m_out.flush();
    }

    void editFor(int seconds, bool isIdle)
    {
        QElapsedTimer clock;
        clock.start();
        while (!clock.hasExpired(seconds * 1000)) {
            QTest::qWait(1500 + m_random.bounded(1000));
            if (!isIdle)
                edit();
        }
    }

    QStringList shown() { return ClientRecords::shown(m_manager); }
    bool isBusy() const { return m_manager.isBusy(); }

private:
    /** The names of new tags tell when they were made. */
    void noteDelay(const TableData &tags)
    {
        for (const TableRowData *tag : tags) {
            const QString name = tag->value("tag_name"_s).toString();
            const qint64 made = name.section(QLatin1Char('@'), 1).toLongLong();
            if (made > 0 && !name.startsWith(m_name + QLatin1Char(' ')))
                say("delay"_s, QString::number(QDateTime::currentMSecsSinceEpoch() - made));
        }
    }
    template <class Container>
    qint64 oneOf(const Container &items)
    {
        return items.at(m_random.bounded(items.size()));
    }
    QVector<qint64> some(const QList<qint64> &items)
    {
        return items.isEmpty() ? QVector<qint64>() : QVector<qint64>{oneOf(items), oneOf(items)};
    }
    /** An edit with a name of its own, which is to be found in the database afterwards, or not at all. */
    void told(const QString &kind, const QString &name, bool isDone)
    {
        const bool isStale = m_warning == "Local data is updating."_s;
        say(isDone ? kind : isStale ? "dropped"_s : "failed"_s, name + QLatin1Char('\t') + m_warning);
    }

    void edit()
    {
        m_warning.clear();
        const QString name = "%1 %2 @%3"_s.arg(m_name, QString::number(++m_edits),
                                               QString::number(QDateTime::currentMSecsSinceEpoch()));
        const QList<qint64> files = m_manager.files().keys();
        const QList<qint64> nodes = m_manager.nodes().keys();
        const QList<qint64> groups = m_manager.groups()->keys();
        const qint64 tag = 1 + m_random.bounded(sharedTags);
        switch (m_random.bounded(14)) {
        case 0:
        case 1:
            return told("made"_s, name, m_manager.addTag(name, some(files)) > 0);
        case 2:
        case 3:
            m_manager.renameTag(tag, name);
            return told("named"_s, name, m_manager.tagName(tag) == name);
        case 4:
            m_manager.changeTagDescription(tag, name);
            return told("described"_s, name, m_warning.isEmpty());
        case 5:
            return told("linked"_s, name, m_manager.linkTags(some(files), {tag}));
        case 6:
            return told("unlinked"_s, name, m_manager.unlinkTags(some(files), {tag}));
        case 7:
            m_manager.addFiles(
                {"https://example.org/"_s + name.simplified().replace(QLatin1Char(' '), "_"_s)}, {tag}, false,
                0);
            return told("asked"_s, name, true);
        case 8:
            m_manager.deleteFiles(some(files).mid(0, files.size() > sharedFiles / 2 ? 1 : 0));
            return told("asked"_s, name, true);
        case 9:
            return told("noded"_s, name, m_manager.addNodeBelow(tag, nodes.isEmpty() ? 0 : oneOf(nodes)) > 0);
        case 10:
            return nodes.size() > 20
                       ? told("unnoded"_s, name, m_manager.removeNodesKeepingChildren({oneOf(nodes)}))
                       : void();
        case 11:
            return told("grouped"_s, name,
                        groups.size() < 10
                            ? m_manager.addGroup(name, true) > 0
                            : m_manager.setGroupTags(oneOf(groups), {tag, 1 + tag % sharedTags}));
        case 12:
            m_manager.addRelations({}, {tag});
            return told("placed"_s, name, m_warning.isEmpty());
        default:
            return told("unplaced"_s, name,
                        (m_manager.removeRelations({QString::number(tag)}), m_warning.isEmpty()));
        }
    }

    PostgresDBManager m_manager;
    QString m_name;
    QTextStream m_out;
    QRandomGenerator m_random;
    QString m_warning;
    int m_edits = 0;
};

/** The life of a client's process; at its end, asked by a line, it says what it shows. */
int runClient(const QStringList &arguments)
{
    const SettingsSandbox settings;
    const DBDetails details(2, arguments.at(2), arguments.at(3).toInt(), arguments.at(4), arguments.at(5),
                            {});
    Client client(details, arguments.at(6));
    client.say("open"_s, {});
    const int seconds = arguments.at(7).toInt();
    client.editFor(seconds, arguments.at(6).startsWith("idle"_s));
    if (!QTest::qWaitFor([&client] { return !client.isBusy(); }, 60000))
        return 1;
    client.say("quiet"_s, {});
    QTest::qWait(5000); // until the others are quiet too, and what they did is here
    client.say("shown"_s, QLatin1String(client.shown().join(QLatin1Char('\n')).toUtf8().toBase64()));
    return 0;
}
} // namespace

/**
 * Several programs that edit one database at the same time, of which some come late and some are killed.
 * VORNA_CLIENTS and VORNA_SECONDS make it a longer run.
 */
class TestManyClients : public QObject
{
    Q_OBJECT

private slots:
    void randomEditsAtOnce()
    {
        if (!ServerDatabase::isAvailable())
            QSKIP("VORNA_TEST_PG names no server");
        const int count = qMax(2, qEnvironmentVariableIntValue("VORNA_CLIENTS"));
        const int seconds = qMax(15, qEnvironmentVariableIntValue("VORNA_SECONDS"));
        ServerDatabase server;
        QVERIFY(Sql::run(qPrintable("INSERT INTO tags SELECT i,'tag '||i,'',0,NULL FROM "
                                    "generate_series(1,%1) i; INSERT INTO files SELECT "
                                    "i,'file '||i,'',0,0,0,'c'||i,1,0,0,0,2 FROM generate_series(1,%2) i; "
                                    "INSERT INTO file_tag SELECT "
                                    "i,1+i%%1 FROM generate_series(1,%2) i"_s.arg(sharedTags)
                                        .arg(sharedFiles))));
        QVERIFY(server.keysTaken());

        for (int i = 0; i < count; ++i)
            start(server, "client%1"_s.arg(i), seconds);
        start(server, "idle"_s, seconds);
        // One dies in the middle, another one comes.
        start(server, "doomed"_s, seconds);
        QTest::qWait(seconds * 500);
        m_clients["doomed"_s]->kill();
        start(server, "late"_s, seconds - seconds / 2);
        for (const auto &client : m_clients)
            QVERIFY(client.second->waitForFinished(seconds * 1000 + 90000));
        judge();
    }

private:
    void start(const ServerDatabase &server, const QString &name, int seconds)
    {
        auto client = std::make_unique<QProcess>();
        const DBDetails details = server.details();
        client->setStandardErrorFile(QProcess::nullDevice());
        client->start(QCoreApplication::applicationFilePath(),
                      {"client"_s, details.host(), QString::number(details.port()), details.databaseName(),
                       details.user(), name, QString::number(seconds)});
        QVERIFY(client->waitForStarted());
        m_clients[name] = std::move(client);
    }

    void judge()
    {
        const QStringList truth = ClientRecords::truth();
        QMap<QString, int> counts;
        QVector<int> delays;
        for (const auto &client : m_clients) {
            QStringList shown;
            const QStringList lines = QString::fromUtf8(client.second->readAll()).split(QLatin1Char('\n'));
            for (const QString &line : lines) {
                const QString word = line.section(QLatin1Char(' '), 0, 0);
                const QString text = line.section(QLatin1Char(' '), 1);
                const QString name = text.section(QLatin1Char('\t'), 0, 0);
                ++counts[word];
                if (word == "delay"_s && client.first == "idle"_s)
                    delays.append(text.toInt());
                else if (word == "shown"_s)
                    shown =
                        QString::fromUtf8(QByteArray::fromBase64(text.toLatin1())).split(QLatin1Char('\n'));
                else if (word == "made"_s)
                    QVERIFY2(Sql::rows("SELECT 1 FROM tags WHERE tag_name='%1'"_s.arg(name)).size() == 1,
                             qPrintable(client.first + ": lost "_s + line));
                else if (word == "dropped"_s || word == "failed"_s)
                    QVERIFY2(
                        Sql::rows("SELECT 1 FROM tags WHERE '%1' IN (tag_name,tag_description)"_s.arg(name))
                            .isEmpty(),
                        qPrintable(client.first + ": stands "_s + line));
                else if (word == "error"_s)
                    QFAIL(qPrintable(client.first + ": "_s + line));
            }
            if (client.first != "doomed"_s)
                QVERIFY2(shown == truth, qPrintable(difference(client.first, shown, truth)));
        }
        // The last of all names that were given to a tag stands, whoever gave it.
        int edits = 0;
        for (auto it = counts.cbegin(); it != counts.cend(); ++it)
            edits += QStringList{"delay"_s, "open"_s, "quiet"_s, "shown"_s, ""_s}.contains(it.key())
                         ? 0
                         : it.value();
        std::sort(delays.begin(), delays.end());
        QVERIFY(!delays.isEmpty());
        const int late = delays.at((delays.size() * 99) / 100 < delays.size() ? delays.size() * 99 / 100 : 0);
        qInfo() << "edits" << edits << counts << "delay in ms, median, 99 of 100, all"
                << delays.at(delays.size() / 2) << late << delays.last();
        QVERIFY(edits > 10);
        QVERIFY(counts["dropped"_s] + counts["failed"_s] <= qMax(2, edits / 100));
        QVERIFY(late < 1000 * mostSecondsBehind);
    }

    static QString difference(const QString &name, const QStringList &shown, const QStringList &truth)
    {
        QStringList lines{name};
        for (const QString &line : truth) {
            if (!shown.contains(line))
                lines.append("misses "_s + line);
        }
        for (const QString &line : shown) {
            if (!truth.contains(line))
                lines.append("shows "_s + line);
        }
        return lines.mid(0, 20).join(QLatin1Char('\n'));
    }

    std::map<QString, std::unique_ptr<QProcess>> m_clients;
};

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    if (application.arguments().value(1) == "client"_s)
        return runClient(application.arguments());
    TestManyClients test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_manyclients.moc"
