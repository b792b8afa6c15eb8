#pragma once

#include "db/manager/exporttarget.h"
#include "fileops/files/partfile.h"
#include "fileops/provider/fileoperationprovider.h"
#include "fileops/worker/sqlitefileoperationworker.h"
#include "tests/support/database.h"
#include "tests/support/settingssandbox.h"

/** A local database with a provider of file operations that exports from it. */
class ExportFixture : private SettingsSandbox
{
    class ImpatientWorker : public SqliteFileOperationWorker
    {
    public:
        using SqliteFileOperationWorker::SqliteFileOperationWorker;

    protected:
        QString connectOptions() const override { return "QSQLITE_OPEN_URI;QSQLITE_BUSY_TIMEOUT=200"_s; }
    };

    class OpenProvider : public FileOperationProvider
    {
    public:
        using FileOperationProvider::FileOperationProvider;

        FileOperationWorker *worker = nullptr;

    protected:
        FileOperationWorker *createWorker(const QString &connectionName) override
        {
            return worker = new ImpatientWorker(connectionName, details(), constructor());
        }
    };

public:
    ExportFixture() : m_provider(std::make_unique<OpenProvider>(database.constructor(), database.details()))
    {
        m_provider->start();
        for (auto signal : {&FileOperationProvider::exchangeDone, &FileOperationProvider::error})
            QObject::connect(m_provider.get(), signal, m_provider.get(),
                             [this](const QString &text) { words.append(text); });
        QObject::connect(m_provider.get(), &FileOperationProvider::fellShort, m_provider.get(),
                         [this](const OperationShortfall &shortfall) { words.append(shortfall.outcome); });
    }

    FileOperationProvider &provider() { return *m_provider; }
    FileOperationWorker &worker() { return *m_provider->worker; }

    /** The form goes by the ending of the name. */
    ExportRequest requestOf(const char *files, const QString &name = "export.vrn"_s) const
    {
        ExportRequest request;
        request.path = database.filePath(name);
        request.form = name.endsWith(".csv"_s) ? ExportRequest::Csv : ExportRequest::Database;
        for (const QString &row : Sql::rows(QLatin1String(files) + " ORDER BY file_id"_s))
            request.fileIds.append(row.toLongLong());
        return request;
    }

    /** Exports and waits for the end. */
    bool run(const ExportRequest &request)
    {
        const std::shared_ptr<PartFile> target = ExportTarget().make(request);
        if (!target)
            return false;
        QSignalSpy finished(m_provider.get(), &FileOperationProvider::finishedFilesOperation);
        m_provider->exportDatabase(request, target);
        return finished.wait(30000) &&
               QTest::qWaitFor([this] { return !m_provider->isBusy() && !words.isEmpty(); });
    }

    /** A text for one value, so long that it takes pages of its own; spoil() damages one of these. */
    static QString longText() { return "replace(hex(zeroblob(150000)),'0','q')"_s; }
    bool spoil()
    {
        // It leads to a page that there is none of.
        const int pageSize = Sql::value("PRAGMA page_size").toInt();
        QFile file(database.path());
        if (!file.open(QIODevice::ReadWrite))
            return false;
        const int place = file.readAll().indexOf(QByteArray(pageSize - 4, 'q')) - 4;
        return place > 0 && place % pageSize == 0 && file.seek(place) && file.write("\x7f\1\1\1") == 4;
    }

    LocalDatabase database;
    QStringList words; ///< what was told at the end

private:
    std::unique_ptr<OpenProvider> m_provider;
};
