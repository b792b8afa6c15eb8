#pragma once

#include <QHash>
#include <QObject>
#include <QString>
#include <QVector>

struct ExternalFileDetails;
class FileOperationWorker;

/**
 * Looks which external files are in their places, and which of these differ from what the database knows of
 * them. Made for one run on the worker's thread.
 */
class FileModificationChecker : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /**
     * The files that have changed, with their paths. Where the absolute path of a record leads nowhere, a
     * local database may know the file by its relative one. On a stop the signals tell of what was looked at.
     */
    QHash<qint64, QString> check(const QVector<qint64> &ids, FileOperationWorker &worker);

signals:
    void noLongerPresent(QVector<qint64> ids);
    void present(QVector<qint64> ids);

private:
    /** False when there is no file. */
    bool look(const ExternalFileDetails &details, const QString &path);
    void lookNearby(FileOperationWorker &worker, const QVector<ExternalFileDetails> &absent);

    QVector<qint64> m_present;
    QVector<qint64> m_absent;
    QHash<qint64, QString> m_modified;
};
