#include "db/manager/pendingreloads.h"

#include <algorithm>

PendingReloads::PendingReloads(QObject *parent) : QObject(parent)
{
    m_timer.setSingleShot(true);
    m_timer.setInterval(retryMilliseconds);
    connect(&m_timer, &QTimer::timeout, this, &PendingReloads::handOut);
}

void PendingReloads::add(int kind, const QVector<qint64> &ids)
{
    if (ids.isEmpty())
        return;
    QSet<qint64> &kept = m_ids[kind];
    for (const qint64 id : ids)
        kept.insert(id);
    // Not anew: what comes again and again must not keep the others waiting.
    if (!m_timer.isActive())
        m_timer.start();
}

void PendingReloads::clear()
{
    m_timer.stop();
    m_ids.clear();
}

void PendingReloads::handOut()
{
    // In the order of the kinds: nodes show tags, files do too.
    const QMap<int, QSet<qint64>> ids = m_ids;
    m_ids.clear();
    for (auto it = ids.cbegin(); it != ids.cend(); ++it) {
        QVector<qint64> sorted(it->cbegin(), it->cend());
        std::sort(sorted.begin(), sorted.end());
        emit due(it.key(), sorted);
    }
}
