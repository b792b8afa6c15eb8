#pragma once

#include "app/settings/dbdetails.h"
#include "core/records/filerecord.h"
#include "db/loading/readtext.h"

#include <QSqlError>
#include <QString>

#include <atomic>
#include <memory>
#include <vector>

/** What reads all files, with their tags; of each back-end the ones that it needs. */
struct FileStatements
{
    QString files;    ///< all columns of a file and of its path, by rising ids of files
    QString links;    ///< file and tag of each link, in the same order
    QString copy;     ///< of a server: the same in one, an array of tags a file
    QString snapshot; ///< of a server: the state that is to be read; empty for the one of now
};

using FileBatch = std::vector<FileRecord>;

/**
 * Reads all files of a database, on a connection of its own, which is opened, used and closed in one thread.
 * Nothing is kept of what was read.
 */
class FileSource
{
public:
    explicit FileSource(const DBDetails &details) : m_details(details) {}
    virtual ~FileSource();
    FileSource(const FileSource &) = delete;
    FileSource &operator=(const FileSource &) = delete;

    static std::unique_ptr<FileSource> make(const DBDetails &details, const FileStatements &statements);

    /** Holds the state that is read from here on; false when that fails. */
    virtual bool begin() = 0;
    /** Appends the files that come next; false at the end and on an error. */
    virtual bool read(FileBatch &batch) = 0;
    /** Closes the connection. */
    virtual void end() = 0;
    /** From any thread: nobody wants more. What waits for a server or a lock ends. */
    virtual void cancel() { m_isCanceled = true; }

    /** Valid after a failure, unless the connection is lost. */
    const QSqlError &error() const { return m_error; }
    bool isConnectionLost() const { return m_isLost; }

protected:
    static constexpr int filesPerBatch = 512;
    static const QString &connectionName();

    const DBDetails &details() const { return m_details; }
    bool isCanceled() const { return m_isCanceled; }
    bool open(const QString &options);
    /** Always false. */
    bool fail(const QSqlError &error);
    bool lose();

    // The texts of the row that is read.
    ReadText m_name;
    ReadText m_text;

private:
    const DBDetails m_details;
    QSqlError m_error;
    bool m_isLost = false;
    std::atomic<bool> m_isCanceled{false};
};
