#pragma once

#include <QtGlobal>

class QString;

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

    /** Size in bytes and time of the last change in seconds since 1970, as they were on opening. */
    qint64 size() const { return m_size; }
    qint64 modified() const { return m_modified; }

    /** Fills up to `length` bytes; fewer only at the end of the file. -1 on an error. */
    qint64 read(char *bytes, qint64 length);

private:
    int m_descriptor = -1;
    qint64 m_size = 0;
    qint64 m_modified = 0;
};
