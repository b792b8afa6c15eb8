#pragma once

#include <QString>

/**
 * A file whose place a new one takes. It is set aside under another name beside its own, and put back when
 * this object goes, unless the new file has proved good: nobody loses a database to one that could not be
 * made.
 */
class ReplacedFile
{
public:
    explicit ReplacedFile(const QString &path) : m_path(path) {}
    ~ReplacedFile();
    ReplacedFile(const ReplacedFile &) = delete;
    ReplacedFile &operator=(const ReplacedFile &) = delete;

    /** False when the file cannot be moved; then it stands where it stood. */
    bool setAside();
    /** Removes what was set aside. */
    void discard();

    /**
     * Removes a database with its journal. A write that a full disk breaks off leaves one behind, which would
     * be played back into the next file of that name and cut it to nothing.
     */
    static void removeDatabase(const QString &path);

private:
    QString m_path;
    QString m_asidePath; // empty while nothing is set aside
};
