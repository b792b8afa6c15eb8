#include "models/counts/nodecounts.h"

#include "app/settings/viewsettings.h"
#include "models/contents/contentsmodel.h"
#include "models/contents/filefiltermodel.h"
#include "models/counts/noderequirements.h"

#include <QDateTime>
#include <QElapsedTimer>
#include <QTimerEvent>

#include <algorithm>

namespace {

constexpr int stepMilliseconds = 8;
// Those before them are no longer on the screen, and ask again when they are.
constexpr int mostAwaited = 300;
constexpr int mostEntries = 2000;
// Times that lie farther ahead come from a wrong clock, and would not fit into a timer.
constexpr qint64 longestWait = 24 * 60 * 60;

} // namespace

NodeCounts::NodeCounts(const NodeRequirements &nodes, QObject *parent) : QObject(parent), m_nodes(nodes) {}

void NodeCounts::setFiles(const FileFilterModel *files)
{
    m_files = files;
    connect(files->contents(), &ContentsModel::contentsChanged, this, &NodeCounts::lookAgain,
            Qt::UniqueConnection);
}

void NodeCounts::setOn(bool on)
{
    if (m_isOn == on)
        return;
    m_isOn = on;
    m_entries.clear();
    m_awaited.clear();
    m_pass.stop();
    tell();
}

void NodeCounts::setReading(bool isReading)
{
    m_isReading = isReading;
    lookAgain();
}

FileCount NodeCounts::of(NodeType type, qint64 nodeId)
{
    const Key key(type, type == TagNode ? nodeId : 0);
    if (!m_isOn || !m_files)
        return {};
    if (m_entries.size() > mostEntries)
        forgetOld();
    Entry &entry = m_entries[key];
    if (!findWanted(key, entry))
        return {};
    entry.round = m_round;
    if (isRight(entry))
        return FileCount(entry.count);
    await(key, entry);
    return entry.count < 0 ? FileCount() : FileCount::outdated(entry.count);
}

const FileIndex *NodeCounts::settledIndex() const
{
    return m_files && !m_isReading && m_files->isUpToDate() ? &m_files->contents()->fileIndex() : nullptr;
}

bool NodeCounts::findWanted(const Key &key, Entry &entry) const
{
    // A view asks with each painting, and large relationships take a while.
    if (entry.structure == m_structure)
        return entry.isThere;
    entry.structure = m_structure;
    entry.wanted = {};
    entry.isThere = key.first != TagNode || m_nodes.findRequirements(key.second, entry.wanted.requirements);
    if (key.first == RecentlyAddedFiles)
        entry.wanted.timeout = ViewSettings::newFilesTimeout();
    return entry.isThere;
}

bool NodeCounts::isRight(Entry &entry) const
{
    const FileIndex *index = settledIndex();
    if (!index || entry.count < 0 || !(entry.counted == entry.wanted))
        return false;
    if (entry.expiry > 0 && QDateTime::currentSecsSinceEpoch() >= entry.expiry)
        return false;
    if (entry.revision == index->revision())
        return true;
    // The fixed nodes, which require no tags, ask for all kinds of things.
    const TagRequirements &asked = entry.wanted.requirements;
    if (asked.required.isEmpty() || lastChangeOf(*index, asked) > entry.revision)
        return false;
    entry.revision = index->revision();
    return true;
}

quint64 NodeCounts::lastChangeOf(const FileIndex &index, const TagRequirements &requirements)
{
    quint64 last = 0;
    for (const qint64 tagId : requirements.allTags())
        last = std::max(last, index.revisionOf(tagId));
    return last;
}

void NodeCounts::await(const Key &key, Entry &entry)
{
    if (!entry.isAwaited) {
        entry.isAwaited = true;
        m_awaited.enqueue(key);
    }
    if (m_awaited.size() > mostAwaited)
        m_entries.find(m_awaited.dequeue())->isAwaited = false;
    if (!m_next.isActive())
        m_next.start(0, this);
}

void NodeCounts::forgetOld()
{
    for (auto entry = m_entries.begin(); entry != m_entries.end();) {
        const bool isOld = entry->round != m_round && !entry->isAwaited;
        entry = isOld ? m_entries.erase(entry) : std::next(entry);
    }
}

void NodeCounts::lookAgain()
{
    ++m_structure;
    if (!m_look.isActive())
        m_look.start(0, this);
}

void NodeCounts::timerEvent(QTimerEvent *event)
{
    if (event->timerId() == m_next.timerId())
        goOn();
    else
        lookAtShown();
}

void NodeCounts::lookAtShown()
{
    m_look.stop();
    m_expiry.stop();
    // Whoever shows one has asked for it since the last time that all were told to.
    QVector<Key> shown;
    for (auto entry = m_entries.cbegin(); entry != m_entries.cend(); ++entry) {
        if (entry->round == m_round)
            shown.append(entry.key());
    }
    for (const Key &key : qAsConst(shown))
        of(NodeType(key.first), key.second);
}

void NodeCounts::goOn()
{
    QElapsedTimer timer;
    timer.start();
    bool isAnyNew = false;
    const FileIndex *index = settledIndex();
    while (index && !timer.hasExpired(stepMilliseconds)) {
        if (m_pass.isRunning() && m_pass.revision() != index->revision())
            // Rows have moved, or have other tags.
            m_pass.begin(*index, NodeType(m_passKey.first), m_passWanted.requirements, m_passWanted.timeout);
        else if (!m_pass.isRunning() && !beginNext(*index))
            index = nullptr;
        if (index && !m_pass.goOn(*index)) {
            keepCount();
            isAnyNew = true;
        }
    }
    // News of the files, or the next question, starts it again.
    if (!index)
        m_next.stop();
    if (isAnyNew)
        tell();
}

bool NodeCounts::beginNext(const FileIndex &index)
{
    while (!m_awaited.isEmpty()) {
        m_passKey = m_awaited.dequeue();
        Entry &entry = *m_entries.find(m_passKey);
        entry.isAwaited = false;
        if (!findWanted(m_passKey, entry) || isRight(entry))
            continue;
        m_passWanted = entry.wanted;
        m_pass.begin(index, NodeType(m_passKey.first), m_passWanted.requirements, m_passWanted.timeout);
        return true;
    }
    return false;
}

void NodeCounts::keepCount()
{
    const auto found = m_entries.find(m_passKey);
    if (found == m_entries.end())
        return;
    found->counted = m_passWanted;
    found->count = m_pass.count();
    found->revision = m_pass.revision();
    found->expiry = m_pass.oldestAddition() > 0 ? m_pass.oldestAddition() + m_passWanted.timeout : 0;
    if (found->expiry == 0)
        return;
    const qint64 wait = found->expiry - QDateTime::currentSecsSinceEpoch();
    m_expiry.start(int(qBound<qint64>(1, wait, longestWait)) * 1000, this);
}

void NodeCounts::tell()
{
    ++m_round;
    emit changed();
}
