#pragma once

#include <QFile>
#include <QObject>

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
    enum Existing { Keep, Replace };

    explicit FileExtractor(FileOperationWorker *worker) : m_worker(worker) {}

    /**
     * True also for what has nothing to copy: a hyperlink, and an external file onto itself. After a failure
     * a file to be replaced stands as it stood, and of a new one stays what was written of an internal file.
     */
    bool extractToFile(qint64 fileId, const QString &target, Existing existing = Keep);
    /** Copies an internal file into the folder for temporary files, for its owner alone. Empty on failure. */
    QString extractToTemporary(qint64 fileId);

signals:
    /** The part of the running file that is through, from 0 to 1. */
    void progress(float part);

private:
    using Fill = std::function<bool(QFile &)>;

    bool extractExternal(qint64 fileId, const QString &target, Existing existing);
    bool writeInternal(qint64 fileId, QFile &target);
    bool copyFrom(RegularFile &source, QFile &target);
    bool write(const QString &target, Existing existing, const Fill &fill);
    static bool giveName(const QString &target, QFile &file, bool isWritten);
    static bool replace(const QString &target, QFile &file, bool isWritten);
    bool isOfTheDatabase(const QString &target) const;
    void report(qint64 done, qint64 total);

    FileOperationWorker *m_worker;
};
