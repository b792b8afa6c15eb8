#include "db/manager/tagmerges.h"

#include "db/manager/recordkeeper.h"

#include <QElapsedTimer>

#include <algorithm>

namespace {
constexpr int stepMilliseconds = 8;
constexpr int filesBetweenLooks = 1000;
constexpr int waitMilliseconds = 50;
} // namespace

void TagMerges::add(const TagChanges &changes)
{
    const bool isFirst = isOver();
    // Each is taken off the end.
    TagChanges waiting(changes.crbegin(), changes.crend());
    m_changes = waiting + m_changes;
    LoadState &state = m_records.loadState();
    if (isFirst && !state.isLoading() && Tagging::pairs(m_changes) <= mostAtOnce) {
        while (!isOver())
            takeSome();
        m_records.settleTags();
    } else {
        state.setMerging(!isOver());
        m_next.start(0, this);
    }
}

void TagMerges::clear()
{
    m_changes.clear();
    m_taken = 0;
    m_next.stop();
    m_records.loadState().setMerging(false);
}

void TagMerges::timerEvent(QTimerEvent *)
{
    if (m_records.loadState().isLoading()) {
        m_next.start(waitMilliseconds, this);
        return;
    }
    QElapsedTimer timer;
    timer.start();
    while (!isOver() && !timer.hasExpired(stepMilliseconds))
        takeSome();
    m_next.start(0, this);
    if (isOver()) {
        clear();
        m_records.settleTags();
    }
}

void TagMerges::takeSome()
{
    TagChange &change = m_changes.last();
    const bool isLinking = m_taken < change.linked.size();
    const QVector<qint64> &list = isLinking ? change.linked : change.unlinked;
    const int from = isLinking ? m_taken : m_taken - change.linked.size();
    const QVector<qint64> some = list.mid(from, filesBetweenLooks);
    m_taken += some.size();
    m_records.changeTag(change.tagId, isLinking, some);
    if (m_taken == change.linked.size() + change.unlinked.size()) {
        m_changes.removeLast();
        m_taken = 0;
    }
}
