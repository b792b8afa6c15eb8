#pragma once

#include "db/loading/filesource.h"

#include <QSqlDatabase>

using PGconn = struct pg_conn;

/**
 * The files of a server's database, as one COPY: the server sends them as fast as they are taken, a row at a
 * time, and the client's library keeps none of them.
 */
class PostgresFileSource : public FileSource
{
public:
    PostgresFileSource(const DBDetails &details, const FileStatements &statements);
    ~PostgresFileSource() override;

    bool begin() override;
    bool read(FileBatch &batch) override;
    void end() override;
    void cancel() override;

private:
    bool run(const QString &statement, int wanted);
    bool failHere();
    bool finish();
    void addFile(FileBatch &batch, char *line, int size);

    const FileStatements m_statements;
    QSqlDatabase m_database;
    PGconn *m_connection = nullptr;
    std::vector<qint64> m_tags;
};
