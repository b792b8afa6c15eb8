#include "bench/networkcosts.h"

#include "app/settings/addingsettings.h"
#include "bench/settling.h"
#include "core/controllers/collection.h"
#include "core/records/recordtypes.h"
#include "db/manager/databasemanger.h"
#include "fileops/worker/fileoperationtypes.h"
#include "tests/support/delayproxy.h"
#include "tests/support/serverdatabase.h"

#include <QElapsedTimer>
#include <QTextStream>

#include <algorithm>
#include <functional>
#include <memory>
#include <vector>

namespace {
struct Edit
{
    const char *name;
    std::function<bool(int round)> run;
};

void printRow(const QString &work, double milliseconds, qint64 roundTrips, double longest = 0)
{
    QTextStream out(stdout);
    out << work.leftJustified(40) << QString::number(milliseconds, 'f', 1).rightJustified(12)
        << QString::number(roundTrips).rightJustified(8);
    if (longest > 0)
        out << QString::number(longest, 'f', 1).rightJustified(12);
    out << "\n";
    out.flush();
}

/** A collection whose way to the server leads through the network. */
class Client
{
public:
    Client(const DBDetails &server, DelayProxy &network) : m_network(network)
    {
        m_collection.reset(
            makeCollection(2, server.host(), server.databaseName(), server.user(), {}, network.port()));
        Settling::Cost cost = Settling::run(
            [this] {
                QObject::connect(m_collection.get(), &Collection::filesRead, m_collection.get(),
                                 [this] { m_isOpening = m_collection->finishLoad() != Collection::Loaded; });
                if (m_collection->open().isValid() || m_collection->beginLoad() != Collection::Loaded)
                    qFatal("the database cannot be opened");
                if (!m_collection->areFilesMany())
                    m_isOpening = m_collection->finishLoad() != Collection::Loaded;
            },
            [this] { return m_isOpening; });
        m_manager = m_collection->findChild<DatabaseManger *>();
        QObject::connect(m_manager, &DatabaseManger::showTempWarning,
                         [](const QString &, const QString &text) { qFatal("%s", qPrintable(text)); });
        QObject::connect(m_manager, &DatabaseManger::errorOccured,
                         [](const QSqlError &error) { qFatal("%s", qPrintable(error.text())); });
        printRow("open %1 files"_s.arg(m_manager->files().size()), cost.wallSeconds * 1000,
                 network.takeRoundTrips(), cost.freezeSeconds * 1000);
    }

    DatabaseManger &manager() { return *m_manager; }

    void measure(const Edit &edit, int rounds)
    {
        double least = 1e9;
        qint64 trips = 0;
        for (int round = 0; round < rounds; ++round) {
            // What the edit before left to be done by the event loop is not this one's.
            QCoreApplication::processEvents();
            m_network.takeRoundTrips();
            QElapsedTimer clock;
            clock.start();
            if (!edit.run(round))
                qFatal("%s failed", edit.name);
            least = std::min(least, double(clock.nsecsElapsed()) / 1e6);
            trips = m_network.takeRoundTrips();
        }
        printRow(QString::fromLatin1(edit.name), least, trips);
    }

    /** An operation of many files: until nothing goes on any more. */
    void measureWhole(const QString &name, int files, const std::function<void()> &work)
    {
        m_network.takeRoundTrips();
        const Settling::Cost cost = Settling::run(
            work, [this, files] { return m_manager->isBusy() || m_manager->files().size() != files; });
        printRow(name, cost.wallSeconds * 1000, m_network.takeRoundTrips(), cost.freezeSeconds * 1000);
    }

private:
    DelayProxy &m_network;
    std::unique_ptr<Collection> m_collection;
    DatabaseManger *m_manager = nullptr;
    bool m_isOpening = true;
};

std::vector<Edit> fileEdits(DatabaseManger &manager)
{
    const auto numbered = [](const char *text, int round) {
        return QLatin1String(text) + QString::number(round);
    };
    return {
        {"rename a tag",
         [&manager, numbered](int round) {
             manager.renameTag(7, numbered("renamed ", round));
             return true;
         }},
        {"describe a file",
         [&manager, numbered](int round) {
             return manager.updateFile(1, "file_description"_s, numbered("described ", round));
         }},
        {"rename an external file",
         [&manager, numbered](int round) {
             const QString name = numbered("name ", round);
             return manager.renameFile(1, name, "/albums/"_s + name, "albums/"_s + name);
         }},
        {"tag a file", [&manager](int round) { return manager.linkTags({2}, {4000 + round}); }},
        {"untag a file", [&manager](int round) { return manager.unlinkTags({2}, {4000 + round}); }},
        {"exchange tags of three files",
         [&manager](int round) {
             return manager.changeTags({2, 3, 4}, {4100 + round}, {4099 + round});
         }},
    };
}

std::vector<Edit> tagEdits(DatabaseManger &manager)
{
    const auto numbered = [&manager](const char *text) {
        return QLatin1String(text) + QString::number(manager.tags().size());
    };
    return {
        {"add a tag", [&manager, numbered](int) { return manager.addTag(numbered("added "), {}) > 0; }},
        {"add a tag on three files",
         [&manager, numbered](int) {
             return manager.addTag(numbered("added "), {2, 3, 4}) > 0;
         }},
        {"add a group", [&manager, numbered](int) { return manager.addGroup(numbered("group "), true) > 0; }},
        {"add a tag to a group",
         [&manager, numbered](int) {
             return manager.addTagToGroup(numbered("grouped "), manager.groups()->begin().key()) > 0;
         }},
        {"give a group other tags",
         [&manager](int round) {
             return manager.setGroupTags(manager.groups()->begin().key(), {10 + round, 20 + round, 30});
         }},
        {"remove a group",
         [&manager](int) {
             const qint64 id = manager.groups()->items().lastKey();
             manager.removeGroups({id});
             return !manager.groups()->contains(id);
         }},
        {"relate two tags",
         [&manager](int round) {
             manager.addRelations("5"_s, {300 + round});
             return true;
         }},
        {"unrelate them",
         [&manager](int round) {
             manager.removeRelations({"5.%1"_s.arg(300 + round)});
             return true;
         }},
        {"remove a tag on nodes", [&manager](int round) { return manager.removeTags({4900 + round}); }},
    };
}

std::vector<Edit> nodeEdits(DatabaseManger &manager)
{
    return {
        {"add a node", [&manager](int round) { return manager.addNodeBelow(40 + round, 1) > 0; }},
        {"add three nodes",
         [&manager](int) {
             const int before = manager.nodes().size();
             manager.addNodesBelow({60, 61, 62}, 2);
             return manager.nodes().size() == before + 3;
         }},
        {"add a node above one",
         [&manager](int round) { return manager.addNodeAbove(70 + round, 100 + round) > 0; }},
        {"invert a node",
         [&manager](int round) {
             manager.updateNode(3, "inverted"_s, QString::number((round + 1) % 2));
             return true;
         }},
        {"remove a node", [&manager](int round) { return manager.removeNodes({200 + round}); }},
        {"remove one, keep those below",
         [&manager](int round) { return manager.removeNodesKeepingChildren({10 + round}); }},
    };
}

/** A folder of small files of their own contents. */
QStringList makeFiles(const QDir &folder, const QString &kind, int count)
{
    QStringList paths;
    for (int i = 0; i < count; ++i) {
        paths.append(folder.filePath("%1-%2.dat"_s.arg(kind).arg(i)));
        QFile file(paths.last());
        if (!file.open(QIODevice::WriteOnly))
            qFatal("no file can be made");
        file.write((paths.last().toUtf8() + '\n').repeated(20));
    }
    return paths;
}

void measureMany(Client &client, const QDir &folder, const NetworkCosts::Amounts &amounts)
{
    DatabaseManger &manager = client.manager();
    const int before = manager.files().size();
    QVector<qint64> all;
    for (qint64 id = 1; id <= amounts.taggedFiles && manager.files().contains(id); ++id)
        all.append(id);
    client.measureWhole("tag %1 files"_s.arg(all.size()), before, [&] { manager.linkTags(all, {4999}); });
    client.measureWhole("untag them"_s, before, [&] { manager.unlinkTags(all, {4999}); });
    for (const bool isLinking : {true, false}) {
        const QString kind = isLinking ? "external"_s : "internal"_s;
        AddingSettings::setLinkToFiles(isLinking);
        const QStringList paths = makeFiles(folder, kind, amounts.addedFiles);
        client.measureWhole("add %1 %2 files with 3 tags"_s.arg(paths.size()).arg(kind),
                            before + paths.size(), [&] {
                                manager.addFiles(paths, {11, 12, 13}, false, 0);
                            });
        QVector<qint64> added;
        for (auto file = --manager.files().end(); added.size() < paths.size(); --file)
            added.append(file.key());
        client.measureWhole("delete them"_s, before, [&] { manager.deleteFiles(added); });
    }
}
} // namespace

void NetworkCosts::print(ServerDatabase &server, double delayMilliseconds, const Amounts &amounts)
{
    registerRecordTypes();
    registerFileOperationTypes();
    const QTemporaryDir folder;
    DelayProxy network(server.details().port(), delayMilliseconds);
    QTextStream(stdout) << "\nover a network, " << delayMilliseconds
                        << " ms each way                       ms   trips  longest ms\n";
    Client client(server.details(), network);
    for (const auto &edits :
         {fileEdits(client.manager()), tagEdits(client.manager()), nodeEdits(client.manager())}) {
        for (const Edit &edit : edits)
            client.measure(edit, amounts.rounds);
    }
    measureMany(client, QDir(folder.path()), amounts);
}
