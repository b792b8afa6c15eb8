#include "db/manager/errorteller.h"

#include "db/sql/basedbprovider.h"
#include "db/sql/errorjudge.h"
#include "fileops/worker/operationshortfall.h"

#include <utility>

namespace {
/** Two sentences in one line; either may be missing. */
QString joined(const QString &first, const QString &second)
{
    return second.isEmpty() ? first : first + QLatin1Char(' ') + second;
}
} // namespace

void ErrorTeller::follow(BaseDBProvider *provider)
{
    connect(provider, &BaseDBProvider::connectionError, this, &ErrorTeller::tellLoss);
    connect(provider, &BaseDBProvider::errorOccured, this, &ErrorTeller::tellError);
}

void ErrorTeller::begin()
{
    m_isLost = false;
    m_toldThumbnailFailure = false;
}

void ErrorTeller::beginSilence()
{
    m_sawBusy = false;
    m_isSilent = true;
}

bool ErrorTeller::runInSilence(const std::function<void()> &step)
{
    beginSilence();
    step();
    endSilence();
    return m_sawBusy;
}

void ErrorTeller::tellLoss()
{
    if (!std::exchange(m_isLost, true))
        emit connectionError();
}

void ErrorTeller::tellError(const QSqlError &error)
{
    const ErrorJudge judge(m_details);
    if (judge.isBusy(error))
        tellBusy();
    else
        emit errorOccured(judge.told(error));
}

void ErrorTeller::tellBusy()
{
    m_sawBusy = true;
    if (!m_isSilent)
        warnOfBusyDatabase();
}

void ErrorTeller::tellShortfall(const OperationShortfall &shortfall)
{
    const ErrorJudge judge(m_details);
    bool isBusy = false;
    bool isTold = false;
    for (const QSqlError &error : shortfall.errors) {
        if (judge.isBusy(error)) {
            isBusy = true;
            continue;
        }
        emit operationFailed(judge.told(error), isTold ? QString() : shortfall.outcome);
        isTold = true;
    }
    if (isTold)
        return;
    if (isBusy)
        warnOfBusyDatabase(shortfall.outcome);
    else
        emit showTempWarning(tr("Canceled"), shortfall.outcome);
}

void ErrorTeller::warnOfBusyDatabase(const QString &outcome)
{
    emit showTempWarning(tr("Warning"), joined(tr("The database is busy. Please try again."), outcome));
}

void ErrorTeller::tellThumbnailFailure(const QVector<qint64> &fileIds, const QSqlError &error)
{
    const ErrorJudge judge(m_details);
    if (judge.isBusy(error))
        emit thumbnailsBusy(fileIds);
    else if (!m_isLost && !std::exchange(m_toldThumbnailFailure, true))
        emit errorOccured(judge.told(error)); // once: each box that closes uncovers them, to be painted again
}
