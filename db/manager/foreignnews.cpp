#include "db/manager/foreignnews.h"

#include "db/manager/errorteller.h"

namespace {
constexpr int retryMilliseconds = 1000;
// Between two looks others may commit again and again: the last word is that of the commit.
constexpr int mostLooks = 5;
} // namespace

ForeignNews::ForeignNews(const AbstractQueryConstructor *constructor, RecordKeeper &records,
                         ThumbnailCache &thumbnails, ErrorTeller &errors, QObject *parent)
    : QObject(parent), m_errors(errors), m_journal(constructor), m_merger(records, thumbnails)
{
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &ForeignNews::mergeWhenFree);
    connect(&m_journal, &ChangeJournal::told, this, [this] { mergeLater(); });
}

void ForeignNews::setUp(const DatabaseProviders &providers, const std::function<bool()> &mayMerge)
{
    m_merger.setProviders(providers);
    m_mayMerge = mayMerge;
}

void ForeignNews::aboutToLoad()
{
    stop();
    m_journal.readPlace();
}

void ForeignNews::stop()
{
    m_timer.stop();
    m_merger.clear();
    m_merger.takeCount();
}

void ForeignNews::mergeLater(int milliseconds)
{
    // Not anew: what comes again and again must not keep the others waiting.
    if (!m_timer.isActive())
        m_timer.start(milliseconds);
}

void ForeignNews::mergeWhenFree()
{
    if (!isThere() || m_errors.isConnectionLost())
        return;
    if (!m_mayMerge()) {
        mergeLater();
        return;
    }
    Reading reading = NotRead;
    const bool wasBusy = m_errors.runInSilence([&] { reading = read(); });
    if (wasBusy)
        mergeLater(retryMilliseconds);
    else if (reading == Read)
        merge();
    else if (!m_errors.isConnectionLost())
        emit fullReloadDue();
}

ForeignNews::Reading ForeignNews::read()
{
    ForeignChanges changes;
    if (m_journal.beginReading(changes) == ChangeJournal::Unread)
        return NotRead;
    m_merger.add(changes);
    const bool isOfAll = m_merger.pending().isOfAll;
    const bool isRead = !isOfAll && m_merger.read();
    m_journal.rollbackTransaction();
    return isOfAll ? TooMuch : isRead ? Read : NotRead;
}

void ForeignNews::merge()
{
    emit aboutToMerge();
    m_merger.merge();
    emit partMerged();
    if (m_merger.haveTreesChanged())
        emit treesChanged();
    if (!m_merger.pending().isEmpty()) {
        mergeLater(0);
        return;
    }
    const NewsCount count = m_merger.takeCount();
    if (!count.isEmpty())
        emit merged(count);
}

bool ForeignNews::mayEdit(const EditBase &base)
{
    ForeignChanges changes;
    const ChangeJournal::Look look = m_journal.look(changes);
    if (look == ChangeJournal::Unread)
        return false;
    return takeIn(changes, base);
}

bool ForeignNews::begin(const EditBase &base)
{
    ForeignChanges taken;
    for (int i = 0; i < mostLooks; ++i) {
        ForeignChanges changes;
        const ChangeJournal::Look look = m_journal.begin(changes);
        if (look == ChangeJournal::Unread)
            return false;
        if (look == ChangeJournal::Current && !base.isMetBy(m_merger.pending())) {
            m_base = base;
            m_justMerged = taken;
            queue().open();
            return true;
        }
        m_journal.rollbackTransaction();
        taken.add(changes);
        if (!takeIn(changes, base))
            return false;
    }
    m_errors.tellBusy();
    return false;
}

bool ForeignNews::takeIn(const ForeignChanges &changes, const EditBase &base)
{
    m_merger.add(changes);
    if (m_merger.pending().isEmpty())
        return true;
    const bool isMet = base.isMetBy(m_merger.pending());
    if (read() == Read) {
        merge();
        return !isMet || drop();
    }
    if (!m_errors.isConnectionLost())
        emit fullReloadDue();
    return drop();
}

bool ForeignNews::drop()
{
    emit editDropped();
    return false;
}

bool ForeignNews::mayTouch(const EditBase &base)
{
    m_base.add(base);
    return (!base.isMetBy(m_justMerged) && !base.isMetBy(m_merger.pending())) || drop();
}

ChangeJournal::Commit ForeignNews::commit()
{
    return m_journal.commit(m_base);
}

void ForeignNews::rollBack()
{
    queue().close();
    m_journal.rollbackTransaction();
}
