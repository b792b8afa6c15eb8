#pragma once

#include "fileops/sqlitefileoperationprovider.h"
#include "tests/support/database.h"
#include "tests/support/settingssandbox.h"

/** A local database with a provider of file operations on it, beside a folder for files to add. */
class AddingFixture : private SettingsSandbox, public LocalDatabase
{
public:
    AddingFixture() : m_provider(constructor(), details(), nullptr)
    {
        m_provider.start();
        QObject::connect(&m_provider, &FileOperationProvider::duplicatesReady, &m_provider,
                         [this](const PresentableDuplicates &found) { m_duplicates = found; });
    }

    FileOperationProvider &provider() { return m_provider; }
    QString path(const QString &name) const { return filePath("in/"_s + name); }
    QString databasePath() const { return LocalDatabase::path(); }
    QString write(const QString &name, const QByteArray &bytes) const
    {
        return LocalDatabase::write("in/"_s + name, bytes);
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
        m_provider.addFiles(paths, tagIds, fromSelectedNode, nodeId, details);
        wait();
    }
    /** Until the worker is idle and its news have arrived. */
    void wait()
    {
        QVERIFY(QTest::qWaitFor([this] { return !m_provider.isBusy(); }, 60000));
        QCoreApplication::processEvents();
    }

    /** Names of files with their tags, sorted: "a.txt: one,two". */
    static QStringList taggedNames()
    {
        return rows("SELECT file_name || ': ' || coalesce((SELECT group_concat(tag_name) FROM (SELECT "
                    "tag_name FROM file_tag NATURAL JOIN tags WHERE file_tag.file_id=files.file_id ORDER BY "
                    "tag_name)),'') FROM files ORDER BY file_name, file_id");
    }
    static QString integrity() { return value("PRAGMA integrity_check"); }

private:
    SqliteFileOperationProvider m_provider;

public:
    // The news of the last add.
    QSignalSpy tags{&m_provider, &FileOperationProvider::updateTags};
    QSignalSpy nodes{&m_provider, &FileOperationProvider::updateNodes};
    QSignalSpy files{&m_provider, &FileOperationProvider::updatedFiles};
    QSignalSpy errors{&m_provider, &FileOperationProvider::errorOccured};
    QSignalSpy finished{&m_provider, &FileOperationProvider::finishedFilesOperation};

private:
    PresentableDuplicates m_duplicates;
};
