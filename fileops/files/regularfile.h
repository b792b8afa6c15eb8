#pragma once

#include <QtGlobal>

class QString;

/** Tells whether a file was written to between two looks. */
struct FileStamp
{
    qint64 size = -1;    ///< -1 for what is no regular file
    qint64 modified = 0; ///< nanoseconds since 1970
};
inline bool operator==(const FileStamp &left, const FileStamp &right)
{
    return left.size == right.size && left.modified == right.modified;
}

/**
 * A regular file opened for one reading from start to end, without the buffers and checks of QFile. Links are
 * followed; folders, pipes, sockets and devices do not open, so that no reading waits for ever.
 */
class RegularFile
{
public:
    RegularFile() = default;
    ~RegularFile();
    RegularFile(const RegularFile &) = delete;
    RegularFile &operator=(const RegularFile &) = delete;

    /** Opens the file read-only, closing the one before. */
    bool open(const QString &path);
    void close();

    /** For one who reads by other means; it stays this object's to close. -1 when nothing is open. */
    int descriptor() const { return m_descriptor; }
    /** Size in bytes and time of the last change in seconds since 1970, as they were on opening. */
    qint64 size() const { return m_stamp.size; }
    qint64 modified() const;
    const FileStamp &stamp() const { return m_stamp; }
    /** False once the open file has been written to since it was opened. */
    bool isAsOpened() const;
    /** Whether two paths lead to one file, without opening it. */
    static bool isSame(const QString &path, const QString &other);
    /** The stamp of a file as it is now, without opening it. */
    static FileStamp stampOf(const QString &path);
    /**
     * This file does not open by whatever name until the next call; an empty path lets all open. For the
     * database itself: closing any descriptor of a file drops all locks that the process holds on it. Any
     * thread.
     */
    static void keepShut(const QString &path);

    /** Fills up to `length` bytes; fewer only at the end of the file. -1 on an error. */
    qint64 read(char *bytes, qint64 length);

private:
    int m_descriptor = -1;
    FileStamp m_stamp;
};
