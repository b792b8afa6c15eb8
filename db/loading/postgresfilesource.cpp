#include "db/loading/postgresfilesource.h"

#include "core/records/filekind.h"
#include "db/sql/connections.h"
#include "db/sql/queryrunner.h"
#include "db/sql/serverwatch.h"

#include <QSqlDriver>
#include <QVariant>

#include <libpq-fe.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

namespace {
// In the order of the COPY statement.
enum Column {
    IdColumn,
    NameColumn,
    DescriptionColumn,
    SizeColumn,
    AdditionColumn,
    ModificationColumn,
    IdCodeColumn,
    LoadColumn,
    StorageColumn,
    ThumbnailColumn,
    ChecksumColumn,
    InternalColumn,
    PathColumn,
    RelPathColumn,
    TagsColumn,
    columnCount
};

/** One value of a row as COPY writes it. */
struct Field
{
    char *bytes = nullptr;
    int size = 0;

    bool isNull() const { return size == 2 && bytes[0] == '\\' && bytes[1] == 'N'; }
    qint64 number() const
    {
        // By hand: the fields have no end but the next tab, and there are ten of them for each of a million
        // files.
        const bool isNegative = size > 0 && *bytes == '-';
        quint64 value = 0;
        for (int i = isNegative ? 1 : 0; i < size && bytes[i] >= '0' && bytes[i] <= '9'; ++i)
            // Unsigned, as the smallest number has no positive counterpart.
            value = value * 10 + static_cast<quint64>(bytes[i] - '0');
        return static_cast<qint64>(isNegative ? 0 - value : value);
    }
    /** Takes the backslashes away, in its place. */
    void unescape();
};

char escaped(char letter)
{
    switch (letter) {
    case 'b':
        return '\b';
    case 'f':
        return '\f';
    case 'n':
        return '\n';
    case 'r':
        return '\r';
    case 't':
        return '\t';
    case 'v':
        return '\v';
    default:
        return letter;
    }
}

void Field::unescape()
{
    if (!std::memchr(bytes, '\\', static_cast<size_t>(size)))
        return;
    int kept = 0;
    for (int i = 0; i < size; ++i) {
        const bool isEscape = bytes[i] == '\\' && i + 1 < size;
        bytes[kept++] = isEscape ? escaped(bytes[++i]) : bytes[i];
    }
    size = kept;
}

std::array<Field, columnCount> fieldsOf(char *line, int size)
{
    std::array<Field, columnCount> fields;
    char *const end = line + size;
    for (Field &field : fields) {
        // A tab within a text comes escaped, so that each one seen parts two fields.
        char *const found = static_cast<char *>(std::memchr(line, '\t', static_cast<size_t>(end - line)));
        char *const last = found ? found : end;
        field = {line, static_cast<int>(last - line)};
        line = found ? last + 1 : end;
    }
    return fields;
}

void read(Field field, ReadText &text)
{
    text.clear();
    if (field.isNull())
        return;
    field.unescape();
    text.setUtf8(field.bytes, field.size);
}

/** An array of numbers, as "{1,2}". */
void readNumbers(const Field &field, std::vector<qint64> &numbers)
{
    numbers.clear();
    if (field.isNull() || field.size < 3)
        return;
    Field rest{field.bytes + 1, field.size - 1};
    while (rest.size > 0) {
        const qint64 value = rest.number();
        if (value > 0)
            numbers.push_back(value);
        auto *const comma = static_cast<char *>(std::memchr(rest.bytes, ',', static_cast<size_t>(rest.size)));
        if (!comma)
            break;
        rest = {comma + 1, rest.size - static_cast<int>(comma + 1 - rest.bytes)};
    }
}
} // namespace

PostgresFileSource::PostgresFileSource(const DBDetails &details, const FileStatements &statements)
    : FileSource(details), m_statements(statements)
{
}

PostgresFileSource::~PostgresFileSource() = default;

bool PostgresFileSource::begin()
{
    if (!open(QString()))
        return false;
    // The connection is opened by the toolkit, as all others, and read by the client library, which alone
    // knows COPY.
    m_database = QSqlDatabase::database(connectionName(), false);
    // A cancel may have come before there was a connection to hear of it.
    if (isCanceled())
        ServerWatch::setCanceled(connectionName(), true);
    const QVariant handle = m_database.driver()->handle();
    if (qstrcmp(handle.typeName(), "PGconn*") != 0)
        return false;
    m_connection = *static_cast<PGconn *const *>(handle.constData());
    // Compiling the statement takes the server longer than it saves.
    return run(QStringLiteral("BEGIN ISOLATION LEVEL REPEATABLE READ READ ONLY"), PGRES_COMMAND_OK) &&
           (m_statements.snapshot.isEmpty() ||
            run(QStringLiteral("SET TRANSACTION SNAPSHOT '%1'").arg(m_statements.snapshot),
                PGRES_COMMAND_OK)) &&
           run(QStringLiteral("SET LOCAL jit = off"), PGRES_COMMAND_OK) &&
           run(m_statements.copy, PGRES_COPY_OUT);
}

bool PostgresFileSource::run(const QString &statement, int wanted)
{
    const ServerWatch::Waiting waiting(m_database, ServerWatch::Patient);
    PGresult *result = PQexec(m_connection, statement.toUtf8().constData());
    const bool isDone = PQresultStatus(result) == wanted;
    if (!isDone) {
        const char *code = PQresultErrorField(result, PG_DIAG_SQLSTATE);
        fail({QString(), QString::fromUtf8(PQerrorMessage(m_connection)), QSqlError::StatementError,
              QString::fromLatin1(code)});
    }
    PQclear(result);
    return isDone || failHere();
}

bool PostgresFileSource::failHere()
{
    if (isCanceled())
        return false;
    return QueryRunner::isConnectionAlive(m_database) ? false : lose();
}

bool PostgresFileSource::read(FileBatch &batch)
{
    if (!m_connection)
        return false;
    ServerWatch::Waiting waiting(m_database, ServerWatch::Patient);
    batch.reserve(filesPerBatch);
    while (static_cast<int>(batch.size()) < filesPerBatch) {
        char *line = nullptr;
        const int size = PQgetCopyData(m_connection, &line, 0);
        // -1 is the end and -2 an error; finish() tells which.
        if (size <= 0)
            return finish() && !batch.empty();
        // Without the end of the line.
        addFile(batch, line, size - 1);
        PQfreemem(line);
        if (isCanceled())
            return false;
    }
    return true;
}

/** What the server says when there are no more rows. */
bool PostgresFileSource::finish()
{
    bool isWhole = true;
    // To the last one: before that the connection takes no further statement.
    while (PGresult *result = PQgetResult(m_connection)) {
        if (PQresultStatus(result) != PGRES_COMMAND_OK) {
            isWhole =
                fail({QString(), QString::fromUtf8(PQresultErrorMessage(result)), QSqlError::StatementError,
                      QString::fromLatin1(PQresultErrorField(result, PG_DIAG_SQLSTATE))});
        }
        PQclear(result);
    }
    m_connection = nullptr;
    return isWhole || failHere();
}

void PostgresFileSource::addFile(FileBatch &batch, char *line, int size)
{
    const std::array<Field, columnCount> fields = fieldsOf(line, size);
    FileRecord &file = batch.emplace_back();
    file.id = fields[IdColumn].number();
    file.size = fields[SizeColumn].number();
    file.additionSeconds = fields[AdditionColumn].number();
    file.modificationSeconds = fields[ModificationColumn].number();
    file.loadId = fields[LoadColumn].number();
    file.storageId = fields[StorageColumn].number();
    file.thumbnailId = fields[ThumbnailColumn].number();
    file.checksum = fields[ChecksumColumn].number();
    file.internal = static_cast<qint32>(fields[InternalColumn].number());
    ::read(fields[NameColumn], m_name);
    file.name.assign(m_name.view());
    ::read(fields[DescriptionColumn], m_text);
    file.description.assign(m_text.view());
    ::read(fields[IdCodeColumn], m_text);
    file.setIdCode(m_text.view());
    if (file.internal == FileKind::external) {
        ::read(fields[PathColumn], m_text);
        file.setPath(m_text.view(), m_name.view());
        ::read(fields[RelPathColumn], m_text);
        file.setRelPath(m_text.view(), m_name.view());
    }
    file.deriveType(m_name.view());
    readNumbers(fields[TagsColumn], m_tags);
    file.tags.assign(m_tags.data(), static_cast<int>(m_tags.size()));
}

void PostgresFileSource::end()
{
    m_connection = nullptr;
    m_database = QSqlDatabase();
    Connections::close(connectionName());
}

void PostgresFileSource::cancel()
{
    FileSource::cancel();
    ServerWatch::setCanceled(connectionName(), true);
}
