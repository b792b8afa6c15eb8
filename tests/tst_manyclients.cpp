#include "db/manager/postgresdbmanager.h"
#include "fileops/worker/fileoperationtypes.h"
#include "tests/support/clientrecords.h"
#include "tests/support/serverdatabase.h"
#include "tests/support/settingssandbox.h"

#include <QApplication>
#include <QDateTime>
#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QSocketNotifier>
#include <QTest>
#include <QTextStream>

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
        m_in.open(0, QIODevice::ReadOnly | QIODevice::Unbuffered);
        connect(&m_hasInput, &QSocketNotifier::activated, this, [this] {
            const QByteArray line = m_in.readLine();
            m_hasInput.setEnabled(!line.isEmpty());
            m_orders.append(line.isEmpty() ? "end"_s : QString::fromUtf8(line.trimmed()));
        });
        if (m_manager.openDB().isValid())
            qFatal("the server cannot be reached");
        m_manager.reloadAllData();
    }

    void say(const QString &word, const QString &text)
    {
        m_out << word << ' ' << text << '\n';
        m_out.flush();
    }

    /** The next line that the test has written; empty when none comes in time. */
    QString order(int milliseconds)
    {
        static_cast<void>(QTest::qWaitFor([this] { return !m_orders.isEmpty(); }, milliseconds));
        return m_orders.isEmpty() ? QString() : m_orders.takeFirst();
    }

    /** With the pauses of a person. */
    void editUntilTold(bool isIdle)
    {
        while (order(1500 + m_random.bounded(1000)).isEmpty()) {
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
    QFile m_in;
    QSocketNotifier m_hasInput{0, QSocketNotifier::Read};
    QStringList m_orders;
    QRandomGenerator m_random;
    QString m_warning;
    int m_edits = 0;
};

/** The life of a client's process: it edits until it is told to end, and then says what it shows when asked.
 */
int runClient(const QStringList &arguments)
{
    const SettingsSandbox settings;
    const DBDetails details(2, arguments.at(2), arguments.at(3).toInt(), arguments.at(4), arguments.at(5),
                            {});
    Client client(details, arguments.at(6));
    client.say("open"_s, {});
    client.editUntilTold(arguments.at(6).startsWith("idle"_s));
    if (!QTest::qWaitFor([&client] { return !client.isBusy(); }, 60000))
        return 1;
    client.say("quiet"_s, {});
    while (client.order(60000) == "show"_s)
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

        // One edit in two seconds or so.
        const int most = seconds / 2;
        for (int i = 0; i < count; ++i)
            start(server, "client%1"_s.arg(i));
        start(server, "idle"_s);
        // One dies in the middle, another one comes.
        start(server, "doomed"_s);
        QTRY_VERIFY_WITH_TIMEOUT(edits("doomed"_s) >= most / 2, seconds * 1000 + 60000);
        m_clients["doomed"_s]->kill();
        QVERIFY(m_clients["doomed"_s]->waitForFinished());
        start(server, "late"_s);
        for (int i = 0; i < count; ++i)
            QTRY_VERIFY_WITH_TIMEOUT(edits("client%1"_s.arg(i)) >= most, seconds * 1000 + 60000);
        QTRY_VERIFY_WITH_TIMEOUT(edits("late"_s) >= most / 2, seconds * 1000 + 60000);
        for (const auto &client : m_clients)
            client.second->write("end\n");
        for (const auto &client : m_clients)
            QTRY_VERIFY_WITH_TIMEOUT(client.first == "doomed"_s || !said(client.first, "quiet"_s).isEmpty(),
                                     90000);
        judge();
        for (const auto &client : m_clients) {
            client.second->closeWriteChannel();
            QVERIFY(client.second->state() == QProcess::NotRunning || client.second->waitForFinished());
        }
    }

private:
    void start(const ServerDatabase &server, const QString &name)
    {
        auto client = std::make_unique<QProcess>();
        const DBDetails details = server.details();
        client->setStandardErrorFile(QProcess::nullDevice());
        client->start(QCoreApplication::applicationFilePath(),
                      {"client"_s, details.host(), QString::number(details.port()), details.databaseName(),
                       details.user(), name});
        QVERIFY(client->waitForStarted());
        m_clients[name] = std::move(client);
    }

    /** All lines of a client that are whole. */
    QStringList linesOf(const QString &name)
    {
        QByteArray &output = m_outputs[name];
        output += m_clients.at(name)->readAllStandardOutput();
        return QString::fromUtf8(output.left(output.lastIndexOf('\n'))).split(QLatin1Char('\n'));
    }
    /** What stands behind a word, line by line. */
    QStringList said(const QString &name, const QString &word)
    {
        QStringList texts;
        for (const QString &line : linesOf(name)) {
            if (line.section(QLatin1Char(' '), 0, 0) == word)
                texts.append(line.section(QLatin1Char(' '), 1));
        }
        return texts;
    }
    static bool isEdit(const QString &word)
    {
        return !QStringList{"delay"_s, "open"_s, "quiet"_s, "shown"_s, ""_s}.contains(word);
    }
    int edits(const QString &name)
    {
        const QStringList lines = linesOf(name);
        return int(std::count_if(lines.cbegin(), lines.cend(), [](const QString &line) {
            return isEdit(line.section(QLatin1Char(' '), 0, 0));
        }));
    }
    /** What a client shows now. */
    QStringList shownBy(const QString &name)
    {
        const int before = said(name, "shown"_s).size();
        m_clients.at(name)->write("show\n");
        if (!QTest::qWaitFor([&] { return said(name, "shown"_s).size() > before; }, 20000))
            return {};
        const QByteArray bytes = QByteArray::fromBase64(said(name, "shown"_s).last().toLatin1());
        return QString::fromUtf8(bytes).split(QLatin1Char('\n'));
    }

    void judge()
    {
        const QStringList truth = ClientRecords::truth();
        QMap<QString, int> counts;
        QVector<int> delays;
        for (const auto &client : m_clients) {
            for (const QString &line : linesOf(client.first)) {
                const QString word = line.section(QLatin1Char(' '), 0, 0);
                const QString text = line.section(QLatin1Char(' '), 1);
                const QString name = text.section(QLatin1Char('\t'), 0, 0);
                ++counts[word];
                if (word == "delay"_s && client.first == "idle"_s)
                    delays.append(text.toInt());
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
            // What the others did at the end may still be on its way.
            QStringList shown;
            const auto isTrue = [&] { return (shown = shownBy(client.first)) == truth; };
            QVERIFY2(client.first == "doomed"_s || QTest::qWaitFor(isTrue, 20000),
                     qPrintable(difference(client.first, shown, truth)));
        }
        // The last of all names that were given to a tag stands, whoever gave it.
        int edits = 0;
        for (auto it = counts.cbegin(); it != counts.cend(); ++it)
            edits += isEdit(it.key()) ? it.value() : 0;
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
    std::map<QString, QByteArray> m_outputs;
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
