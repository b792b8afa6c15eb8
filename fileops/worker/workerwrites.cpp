#include "fileops/worker/workerwrites.h"

#include "db/sql/foreignwrites.h"
#include "fileops/worker/fileoperationworker.h"

bool WorkerWrites::readVersion(qint64 &version)
{
    return ForeignWrites::readVersion(m_worker, m_worker.connectionName(), version);
}

bool WorkerWrites::isCurrent()
{
    qint64 version = 0;
    if (!readVersion(version))
        return false;
    // While this connection holds the write lock, what the window sees is what there is. A change that is the
    // window's own it does not see as one.
    if (!m_isCurrent || version != m_version)
        m_isCurrent = m_window.isWindowCurrent([this] { return m_worker.isStopped(); });
    m_version = version;
    return m_isCurrent;
}

void WorkerWrites::aboutToCommit()
{
    m_window.announceCommit();
}

void WorkerWrites::committed(bool isDone)
{
    if (!isDone) {
        m_window.commitFailed();
        return;
    }
    const bool isSeen = m_window.showCommit([this] { return m_worker.isStopped(); });
    qint64 version = 0;
    const bool isOwn = isSeen && readVersion(version) && version == m_version;
    m_isCurrent = m_isCurrent && isOwn;
    m_window.settleCommit(isOwn);
}

void WorkerWrites::rolledBack()
{
    m_window.changesUndone();
}
