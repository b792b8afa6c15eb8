#pragma once

#include "db/loading/filesource.h"
#include "db/sql/readbound.h"

#include <QStringList>
#include <QVariant>
#include <QVector>

struct sqlite3;
struct sqlite3_stmt;

/**
 * The files of a local database, read through SQLite itself, as the driver takes most of the time of a
 * reading to make values of what it got: two statements, both by rising ids, read side by side.
 */
class SqliteFileSource : public FileSource
{
public:
    SqliteFileSource(const DBDetails &details, const FileStatements &statements);
    ~SqliteFileSource() override;

    bool begin() override;
    bool read(FileBatch &batch) override;
    void end() override;

private:
    void findColumns();
    bool prepare(const QString &text, sqlite3_stmt *&statement);
    bool step(sqlite3_stmt *statement, bool &hasRow);
    bool failHere();
    bool addFile(FileBatch &batch);
    bool readTags(qint64 fileId);
    qint64 number(int column) const;
    void readText(int column, ReadText &text) const;
    QVariant oddValue(int column) const;

    const FileStatements m_statements;
    sqlite3 *m_handle = nullptr;
    sqlite3_stmt *m_files = nullptr;
    sqlite3_stmt *m_links = nullptr;
    std::unique_ptr<ReadBound> m_bound;
    bool m_hasFile = false;
    bool m_hasLink = false;
    std::vector<qint64> m_tags;
    // Where the columns stand; -1 for one that an older database has not.
    struct
    {
        int fileId, name, description, size, addition, modification, idCode, load, storage, thumbnail,
            checksum, internal, path, relPath;
    } m_at;
};
