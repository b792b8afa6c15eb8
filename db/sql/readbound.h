#pragma once

#include <QString>

class QSqlDatabase;
class QVariant;
struct sqlite3;

/**
 * As long as it lives, statements on a local database end that take more steps or more work, or give longer
 * texts, than reading all of its file could: pages of a damaged or crafted file may lead to each other, and
 * give rows without end. For looking at a file and reading all records, or for operations that read no other
 * file; on the thread of the connection, one at a time, and not beyond its closing.
 */
class ReadBound
{
public:
    enum Scope {
        AllStatements, ///< the bound is for all of them together
        EachStatement  ///< it begins anew with each, and has room for pages that are not in the file yet
    };
    explicit ReadBound(const QSqlDatabase &database, Scope scope = AllStatements);
    ~ReadBound();
    ReadBound(const ReadBound &) = delete;
    ReadBound &operator=(const ReadBound &) = delete;

    /** A value was read on this thread. */
    static void count(const QVariant &value);
    static void countCharacters(int characters);
    /** A statement of so many signs begins on this thread: its own values take steps, too. */
    static void beginStatement(int length);

private:
    static int countDown(void *bound);
    qint64 fileSize() const;
    void grant(qint64 bytes);
    bool isBeyond() const;
    bool hasFileGrown();

    const Scope m_scope;
    const QString m_path;
    qint64 m_bytes;
    sqlite3 *m_handle = nullptr; ///< null where nothing is bounded
    ReadBound *m_outer;          ///< of another connection
    qint64 m_stepsLeft = 0;
    qint64 m_workLeft = 0;       ///< nanoseconds, from the first look on
    qint64 m_lastNanosecond = 0; ///< of the thread's own time; 0 before that look
    qint64 m_signsLeft = 0;
};
