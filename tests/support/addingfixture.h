#pragma once

#include "fileops/provider/postgresfileoperationprovider.h"
#include "fileops/provider/sqlitefileoperationprovider.h"
#include "tests/support/database.h"
#include "tests/support/settingssandbox.h"

/**
 * A database with a provider of file operations on it, beside a folder for files to add: a new local one, or
 * the one that it is given.
 */
class AddingFixture : private SettingsSandbox, public TestFolder, public Sql
{
public:
    explicit AddingFixture(std::unique_ptr<TestDatabase> database = std::make_unique<LocalDatabase>())
        : m_database(std::move(database)), m_provider(makeProvider(*m_database))
    {
        m_provider->setBrowsingTreeId(isLocal() ? 0 : 1);
        QObject::connect(m_provider.get(), &FileOperationProvider::duplicatesReady, m_provider.get(),
                         [this](const PresentableDuplicates &found) { m_duplicates = found; });
    }

    TestDatabase &database() { return *m_database; }
    DBDetails details() const { return m_database->details(); }
    QString databasePath() const { return details().databaseName(); }
    bool isLocal() const { return details().type() == Constants::localDatabase; }
    FileOperationProvider &provider() { return *m_provider; }
    /** Made at need; its signals come in its own thread to who is connected directly. */
    FileOperationWorker &worker()
    {
        m_provider->start();
        return *m_worker;
    }
    QString path(const QString &name) const { return filePath("in/"_s + name); }
    QString write(const QString &name, const QByteArray &bytes) const
    {
        return TestFolder::write("in/"_s + name, bytes);
    }
    /** The ids that a signal told of first. */
    static QVector<qint64> idsOf(const QSignalSpy &spy)
    {
        return spy.value(0).value(0).value<QVector<qint64>>();
    }
    /** What the last add reported. */
    const PresentableDuplicates &duplicates() const { return m_duplicates; }

    void add(const QStringList &paths, const QVector<qint64> &tagIds = {}, bool fromSelectedNode = false,
             qint64 nodeId = 0, const QHash<QString, QString> &details = {})
    {
        m_duplicates = PresentableDuplicates();
        for (QSignalSpy *spy : {&tags, &nodes, &files, &errors, &finished})
            spy->clear();
        m_provider->addFiles(paths, tagIds, fromSelectedNode, nodeId, details);
        wait();
    }
    /** Until the worker is idle and its news have arrived. */
    void wait()
    {
        QVERIFY(QTest::qWaitFor([this] { return !m_provider->isBusy(); }, 60000));
        QCoreApplication::processEvents();
    }

    /** As if the program had been closed in between; the news go to nobody from here on. */
    void restart() { m_provider = makeProvider(*m_database); }

    /** Names of files with their tags, sorted: "a.txt: one,two". */
    static QStringList taggedNames()
    {
        QMap<QPair<QString, qint64>, QStringList> tagsOf;
        QSqlQuery query("SELECT file_name, files.file_id, tag_name FROM files LEFT JOIN file_tag ON "
                        "file_tag.file_id=files.file_id LEFT JOIN tags ON tags.tag_id=file_tag.tag_id "
                        "ORDER BY tag_name"_s);
        while (query.next())
            tagsOf[{DriverTexts::read(query, 0).toString(), query.value(1).toLongLong()}].append(
                DriverTexts::read(query, 2).toString());
        QStringList names;
        for (auto file = tagsOf.cbegin(); file != tagsOf.cend(); ++file)
            names.append(file.key().first + ": "_s + file->join(QLatin1Char(',')));
        return names;
    }
    /** "ok" for a sound file; a server looks after its own. */
    QString integrity() const { return isLocal() ? value("PRAGMA integrity_check") : "ok"_s; }

private:
    /** Tells who its worker is. */
    template <class Provider>
    class OpenProvider : public Provider
    {
    public:
        OpenProvider(const TestDatabase &database, FileOperationWorker *&worker)
            : Provider(database.constructor(), database.details()), m_worker(worker)
        {
        }

    protected:
        FileOperationWorker *createWorker(const QString &connectionName) override
        {
            return m_worker = Provider::createWorker(connectionName);
        }

    private:
        FileOperationWorker *&m_worker;
    };

    std::unique_ptr<FileOperationProvider> makeProvider(const TestDatabase &database)
    {
        if (database.details().type() == Constants::localDatabase)
            return std::make_unique<OpenProvider<SqliteFileOperationProvider>>(database, m_worker);
        return std::make_unique<OpenProvider<PostgresFileOperationProvider>>(database, m_worker);
    }

    std::unique_ptr<TestDatabase> m_database;
    FileOperationWorker *m_worker = nullptr;
    std::unique_ptr<FileOperationProvider> m_provider;

public:
    // The news of the last add.
    QSignalSpy tags{m_provider.get(), &FileOperationProvider::updateTags};
    QSignalSpy nodes{m_provider.get(), &FileOperationProvider::updateNodes};
    QSignalSpy files{m_provider.get(), &FileOperationProvider::updatedFiles};
    QSignalSpy errors{m_provider.get(), &FileOperationProvider::fellShort};
    QSignalSpy finished{m_provider.get(), &FileOperationProvider::finishedFilesOperation};

private:
    PresentableDuplicates m_duplicates;
};
