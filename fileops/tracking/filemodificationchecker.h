#pragma once

#include <QHash>
#include <QObject>
#include <QString>
#include <QVector>

#include <memory>

struct ExternalFileDetails;
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
     * what was looked at.
     */
    QHash<qint64, QString> check(const QVector<qint64> &ids, FileOperationWorker &worker);

signals:
    void noLongerPresent(QVector<qint64> ids);
    void present(QVector<qint64> ids);

private:
    void forget();
    /** False when it cannot be done that way, and nothing was noted. */
    bool lookQuickly(const QVector<qint64> &ids, FileOperationWorker &worker);
    bool lookAtRow(const PlainRows &row);
    bool lookOrdinarily(const QVector<qint64> &ids, FileOperationWorker &worker);
    void lookNearby(FileOperationWorker &worker);
    /** False when there is no file. */
    bool look(const ExternalFileDetails &details, const QString &path);

    std::unique_ptr<PlainRows> m_rows;
    QVector<qint64> m_present;
    QVector<ExternalFileDetails> m_astray; ///< not at their absolute paths
    QVector<qint64> m_absent;
    QHash<qint64, QString> m_modified;
};
