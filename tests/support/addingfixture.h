#pragma once

#include "app/constants.h"
#include "db/schema.h"
#include "db/sqlitequeryconstructor.h"
#include "fileops/sqlitefileoperationprovider.h"
#include "tests/support/settingssandbox.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSignalSpy>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

/**
 * A folder for files, beside it a new local database on the default connection, and a provider of file
 * operations on it, all gone with the object. Settings are the test's own.
 */
class AddingFixture
{
public:
    AddingFixture()
    {
        QDir(m_folder.path()).mkdir(QStringLiteral("in"));
        QSqlDatabase database = QSqlDatabase::addDatabase(Constants::sqliteDriver);
        database.setDatabaseName(databasePath());
        database.open();
        database.transaction();
        for (const QString &statement : Schema::creationStatements())
            QSqlQuery().exec(statement);
        database.commit();
        m_provider = std::make_unique<SqliteFileOperationProvider>(&m_constructor,
                                                                   DBDetails::local(databasePath()), nullptr);
        m_provider->start();
        QObject::connect(m_provider.get(), &FileOperationProvider::duplicatesReady, m_provider.get(),
                         [this](const PresentableDuplicates &found) { m_duplicates = found; });
    }
    ~AddingFixture()
    {
        m_provider.reset();
        QSqlDatabase::database().close();
        QSqlDatabase::removeDatabase(QLatin1String(QSqlDatabase::defaultConnection));
    }
    AddingFixture(const AddingFixture &) = delete;
    AddingFixture &operator=(const AddingFixture &) = delete;

    FileOperationProvider &provider() { return *m_provider; }
    QString databasePath() const { return m_folder.filePath(QStringLiteral("test.vrn")); }
    QString path(const QString &name) const { return m_folder.filePath(QStringLiteral("in/") + name); }
    /** What the last add reported. */
    const PresentableDuplicates &duplicates() const { return m_duplicates; }

    /** Writes a file, making its folders. Its path. */
    QString write(const QString &name, const QByteArray &bytes) const
    {
        const QString result = path(name);
        QDir().mkpath(QFileInfo(result).path());
        QFile file(result);
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("cannot write %s", qPrintable(result));
        return result;
    }

    void add(const QStringList &paths, const QVector<qint64> &tagIds = {}, bool fromSelectedNode = false,
             qint64 nodeId = 0, const QHash<QString, QString> &details = {})
    {
        m_duplicates = PresentableDuplicates();
        m_provider->addFiles(paths, tagIds, fromSelectedNode, nodeId, details);
        wait();
    }
    /** Until the worker is idle and its news have arrived. */
    void wait()
    {
        QVERIFY(QTest::qWaitFor([this] { return !m_provider->isBusy(); }, 60000));
        QCoreApplication::processEvents();
    }

    bool run(const QString &statement) { return QSqlQuery().exec(statement); }
    /** The rows of a query, each with its values between bars. */
    QStringList rows(const QString &statement) const
    {
        QSqlQuery query(statement);
        QStringList result;
        while (query.next()) {
            QStringList values;
            for (int i = 0; i < query.record().count(); ++i)
                values.append(query.value(i).toString());
            result.append(values.join(QLatin1Char('|')));
        }
        return result;
    }
    int count(const QString &table) const
    {
        return rows(QStringLiteral("SELECT count(*) FROM ") + table).value(0).toInt();
    }
    /** Names of files with their tags, sorted: "a.txt: one,two". */
    QStringList taggedNames() const
    {
        return rows(QStringLiteral(
            "SELECT file_name || ': ' || coalesce((SELECT group_concat(tag_name) FROM (SELECT tag_name FROM "
            "file_tag NATURAL JOIN tags WHERE file_tag.file_id=files.file_id ORDER BY tag_name)),'') FROM "
            "files "
            "ORDER BY file_name, file_id"));
    }
    QString integrity() const
    {
        return rows(QStringLiteral("PRAGMA integrity_check")).join(QLatin1Char('\n'));
    }

private:
    SettingsSandbox m_settings;
    QTemporaryDir m_folder;
    SqliteQueryConstructor m_constructor;
    std::unique_ptr<FileOperationProvider> m_provider;
    PresentableDuplicates m_duplicates;
};
