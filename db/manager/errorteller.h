#pragma once

#include "app/settings/dbdetails.h"

#include <QObject>
#include <QSqlError>
#include <QVector>

#include <functional>

class BaseDBProvider;
struct OperationShortfall;

/**
 * Tells what fails on the connections of one database, each cause once: a lock as the short warning, or not
 * at all while what met it is tried again, a lost connection by its own signal, all else as it is. Owned by
 * the manager, whose signals pass the news on. GUI thread.
 */
class ErrorTeller : public QObject
{
    Q_OBJECT

public:
    explicit ErrorTeller(const DBDetails &details) : m_details(details) {}

    void follow(BaseDBProvider *provider);
    /** The database is opened: what was told before counts no more. */
    void begin();

    bool isConnectionLost() const { return m_isLost; }
    /** Whether something met a lock since the silence began, or since it was forgotten. */
    bool sawBusy() const { return m_sawBusy; }
    void forgetBusy() { m_sawBusy = false; }

    /** A busy database is no news for the user until the end: whoever begins tries again, or tells. */
    void beginSilence();
    void endSilence() { m_isSilent = false; }
    /** Runs a step between the two. True when it met a lock. */
    bool runInSilence(const std::function<void()> &step);

    /** The connection is lost. */
    void tellLoss();
    void tellError(const QSqlError &error);
    void tellBusy();
    /** With how far an operation came. */
    void warnOfBusyDatabase(const QString &outcome = QString());
    void tellShortfall(const OperationShortfall &shortfall);
    void tellThumbnailFailure(const QVector<qint64> &fileIds, const QSqlError &error);

signals:
    void connectionError();
    void errorOccured(QSqlError error);
    void operationFailed(QSqlError error, QString outcome);
    void showTempWarning(QString title, QString text);
    /** Only a lock was in their way. */
    void thumbnailsBusy(QVector<qint64> fileIds);

private:
    const DBDetails m_details;
    bool m_isLost = false;
    bool m_isSilent = false;
    bool m_sawBusy = false;
    bool m_toldThumbnailFailure = false;
};
