#include "db/loading/sqlitefilesource.h"

#include "core/records/filekind.h"
#include "db/sql/connections.h"
#include "db/sql/sqlitehandle.h"

#include <QSqlDatabase>

#include <sqlite3.h>

namespace {
// In milliseconds; a longer lock is waited for by whoever asked for the files.
const QString busyTimeout = QStringLiteral("QSQLITE_BUSY_TIMEOUT=250");
} // namespace

SqliteFileSource::SqliteFileSource(const DBDetails &details, const FileStatements &statements)
    : FileSource(details), m_statements(statements), m_at{}
{
}

SqliteFileSource::~SqliteFileSource() = default;

bool SqliteFileSource::begin()
{
    if (!Connections::isDatabaseThere(details()))
        return fail(Connections::missingFile(details()));
    if (!open(busyTimeout))
        return false;
    const QSqlDatabase database = QSqlDatabase::database(connectionName(), false);
    m_handle = sqliteHandle(database);
    // Another library's handle: whoever asks reads through the driver.
    if (!m_handle)
        return false;
    m_bound = std::make_unique<ReadBound>(database);
    if (sqlite3_exec(m_handle, "BEGIN;", nullptr, nullptr, nullptr) != SQLITE_OK)
        return failHere();
    // The first rows are read: from here on it is one state.
    if (!prepare(m_statements.files, m_files) || !prepare(m_statements.links, m_links) ||
        !step(m_files, m_hasFile) || !step(m_links, m_hasLink))
        return false;
    findColumns();
    return true;
}

bool SqliteFileSource::prepare(const QString &text, sqlite3_stmt *&statement)
{
    const QByteArray bytes = text.toUtf8();
    return sqlite3_prepare_v2(m_handle, bytes.constData(), bytes.size(), &statement, nullptr) == SQLITE_OK ||
           failHere();
}

bool SqliteFileSource::step(sqlite3_stmt *statement, bool &hasRow)
{
    const int code = sqlite3_step(statement);
    hasRow = code == SQLITE_ROW;
    return hasRow || code == SQLITE_DONE || failHere();
}

bool SqliteFileSource::failHere()
{
    return fail({QString(), QString::fromUtf8(sqlite3_errmsg(m_handle)), QSqlError::StatementError,
                 QString::number(sqlite3_errcode(m_handle))});
}

void SqliteFileSource::findColumns()
{
    QStringList names;
    for (int i = 0; i < sqlite3_column_count(m_files); ++i)
        names.append(QString::fromUtf8(sqlite3_column_name(m_files, i)));
    const auto place = [&names](const char *name) { return names.indexOf(QLatin1String(name)); };
    m_at = {place("file_id"),       place("file_name"),         place("file_description"), place("file_size"),
            place("addition_date"), place("modification_date"), place("id_code"),          place("load_id"),
            place("storage_id"),    place("thumbnail_id"),      place("data_checksum"),    place("internal"),
            place("path"),          place("rel_path")};
}

bool SqliteFileSource::read(FileBatch &batch)
{
    batch.reserve(filesPerBatch);
    while (m_hasFile && static_cast<int>(batch.size()) < filesPerBatch) {
        if (isCanceled() || !addFile(batch) || !step(m_files, m_hasFile))
            return false;
    }
    return m_hasFile || !batch.empty();
}

bool SqliteFileSource::addFile(FileBatch &batch)
{
    FileRecord &file = batch.emplace_back();
    file.id = number(m_at.fileId);
    file.size = number(m_at.size);
    file.additionSeconds = number(m_at.addition);
    file.modificationSeconds = number(m_at.modification);
    file.loadId = number(m_at.load);
    file.storageId = number(m_at.storage);
    file.thumbnailId = number(m_at.thumbnail);
    file.checksum = number(m_at.checksum);
    file.internal = static_cast<qint32>(number(m_at.internal));
    readText(m_at.name, m_name);
    file.name.assign(m_name.view());
    readText(m_at.description, m_text);
    file.description.assign(m_text.view());
    readText(m_at.idCode, m_text);
    file.setIdCode(m_text.view());
    // Only an external file has a path: the storage id of another kind is the key of another table.
    if (file.internal == FileKind::external) {
        readText(m_at.path, m_text);
        file.setPath(m_text.view(), m_name.view());
        readText(m_at.relPath, m_text);
        file.setRelPath(m_text.view(), m_name.view());
    }
    file.deriveType(m_name.view());
    if (!readTags(file.id))
        return false;
    file.tags.assign(m_tags.data(), static_cast<int>(m_tags.size()));
    return true;
}

bool SqliteFileSource::readTags(qint64 fileId)
{
    m_tags.clear();
    while (m_hasLink) {
        const qint64 linkedId = sqlite3_column_int64(m_links, 0);
        // Both statements are in the order of file ids; a link below the current file belongs to none and is
        // passed over.
        if (linkedId > fileId)
            break;
        const qint64 tagId = sqlite3_column_int64(m_links, 1);
        if (linkedId == fileId && tagId > 0)
            m_tags.push_back(tagId);
        if (isCanceled() || !step(m_links, m_hasLink))
            return false;
    }
    return true;
}

qint64 SqliteFileSource::number(int column) const
{
    if (column < 0)
        return 0;
    const int type = sqlite3_column_type(m_files, column);
    return type == SQLITE_INTEGER ? sqlite3_column_int64(m_files, column)
           : type == SQLITE_NULL  ? 0
                                  : oddValue(column).toLongLong();
}

void SqliteFileSource::readText(int column, ReadText &text) const
{
    text.clear();
    const int type = column < 0 ? SQLITE_NULL : sqlite3_column_type(m_files, column);
    if (type == SQLITE_NULL)
        return;
    if (type != SQLITE_TEXT) {
        text.set(oddValue(column).toString());
        return;
    }
    const auto *bytes = reinterpret_cast<const char *>(sqlite3_column_text(m_files, column));
    const int size = sqlite3_column_bytes(m_files, column);
    ReadBound::countCharacters(size);
    if (!bytes || text.setAscii(bytes, size))
        return;
    // What is not valid UTF-8 turns into the same signs as in each other reading of it.
    const void *wide = sqlite3_column_text16(m_files, column);
    if (wide)
        text.set({static_cast<const QChar *>(wide), sqlite3_column_bytes16(m_files, column) / 2});
}

/** A value of another kind than its column, which any local database may have: as the driver gives it. */
QVariant SqliteFileSource::oddValue(int column) const
{
    switch (sqlite3_column_type(m_files, column)) {
    case SQLITE_INTEGER:
        return sqlite3_column_int64(m_files, column);
    case SQLITE_FLOAT:
        return sqlite3_column_double(m_files, column);
    case SQLITE_BLOB:
        return QByteArray(static_cast<const char *>(sqlite3_column_blob(m_files, column)),
                          sqlite3_column_bytes(m_files, column));
    default:
        return QString(static_cast<const QChar *>(sqlite3_column_text16(m_files, column)),
                       sqlite3_column_bytes16(m_files, column) / 2);
    }
}

void SqliteFileSource::end()
{
    sqlite3_finalize(m_files);
    sqlite3_finalize(m_links);
    m_files = nullptr;
    m_links = nullptr;
    m_bound.reset();
    m_handle = nullptr;
    Connections::close(connectionName());
}
