#pragma once

#include <QFile>
#include <QObject>
#include <QSet>

#include <functional>

class FileOperationWorker;
class RegularFile;

/**
 * Copies files of the database to the disk with the statements of a worker, on whose thread's stack it lives
 * for one run. A stop or cancel ends a copy as a failure does.
 */
class FileExtractor : public QObject
{
    Q_OBJECT

public:
    /** What becomes of a file that has the target's name already. */
    enum Existing {
        Keep,
        Replace,
        Compare ///< with the same bytes it is taken for this file, else it stays and this one gets a new name
    };

    enum Outcome {
        Extracted,
        LeftOut, ///< this file cannot be read, or has no place there; others may do
        Failed   ///< what would stop all behind it too: a full disk, a database in use, a stop or cancel
    };

    explicit FileExtractor(FileOperationWorker *worker) : m_worker(worker) {}

    /**
     * Done also with what has nothing to copy: a hyperlink, and an external file onto itself. After a failure
     * a file to be replaced stands as it stood, and of a new one stays what was written of an internal file.
     */
    Outcome extractToFile(qint64 fileId, const QString &target, Existing existing = Keep);
    /** Copies an internal file into the folder for temporary files, for its owner alone. Empty on failure. */
    QString extractToTemporary(qint64 fileId);
    /** What the last file is called: the path of an external one, the name of the others, if known. */
    QString source() const { return m_source; }
    /** Where the last file was to be written to. */
    const QString &target() const { return m_target; }
    /** Why that failed, in the words of the system; empty when it was not for the place. */
    const QString &reason() const { return m_reason; }
    /** True when only its beginning stands there. */
    bool isCutShort() const { return m_isCutShort; }
    /** Paths that are not to be given to other files. */
    void setReserved(const QSet<QString> &paths) { m_reserved = paths; }

signals:
    /** The part of the running file that is through, from 0 to 1. */
    void progress(float part);

private:
    using Fill = std::function<Outcome(QFile &)>;

    Outcome extractExternal(qint64 fileId, const QString &target, Existing existing);
    Outcome extractInternal(qint64 fileId, const QString &target, Existing existing);
    Outcome writeInternal(qint64 fileId, QFile &target);
    Outcome copyFrom(RegularFile &source, QFile &target);
    Outcome write(const QString &target, Existing existing, bool keepsPart, const Fill &fill);
    void noteReason(const QFile &file);
    Outcome whyNothingWasRead() const;
    bool hasContents(const QString &path, qint64 fileId, int kind);
    void cleanUp(const QString &folder);
    QString freePath(const QString &target) const;
    bool isOfTheDatabase(const QString &target) const;
    void report(qint64 done, qint64 total);

    FileOperationWorker *m_worker;
    QString m_source;
    QString m_target;
    QString m_reason;
    bool m_isCutShort = false;
    QSet<QString> m_reserved;
    QSet<QString> m_cleanFolders; ///< where nothing of ended processes is left
};
