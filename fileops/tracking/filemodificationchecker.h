#pragma once

#include <QByteArray>
#include <QHash>
#include <QObject>
#include <QString>
#include <QVector>

#include <memory>

struct FileLook;
class FileOperationWorker;
class PlainRows;

/**
 * Looks which external files are in their places, and which of these differ from what the database knows of
 * them. Made for one run on the worker's thread.
 */
class FileModificationChecker : public QObject
{
    Q_OBJECT

public:
    explicit FileModificationChecker(QObject *parent = nullptr);
    ~FileModificationChecker() override;

    /**
     * The files that have changed, with their paths; the ids ascend. Where the absolute path of a record
     * leads nowhere, a local database may know the file by its relative one. On a stop the signals tell of
     * what was looked at; of a file on a disk that does not answer they tell nothing.
     */
    QHash<qint64, QString> check(const QVector<qint64> &ids, FileOperationWorker &worker);

signals:
    void noLongerPresent(QVector<qint64> ids);
    void present(QVector<qint64> ids);

private:
    /** Where a file should be, and what the database knows of it. */
    struct Place
    {
        qint64 fileId = 0;
        qint64 storedTime = 0;
        qint64 size = 0;
        QByteArray path;
    };

    void forget();
    /** False when it cannot be done that way, and nothing was noted. */
    bool lookQuickly(const QVector<qint64> &ids, FileOperationWorker &worker);
    bool lookOrdinarily(const QVector<qint64> &ids, FileOperationWorker &worker);
    void lookAtPlaces(FileOperationWorker &worker);
    void lookNearby(FileOperationWorker &worker);
    void take(const Place &place, const FileLook &found);

    std::unique_ptr<PlainRows> m_rows;
    QVector<Place> m_places;
    QVector<qint64> m_present;
    QVector<Place> m_astray; ///< not at their absolute paths
    QVector<qint64> m_absent;
    QHash<qint64, QString> m_modified;
};
