#include "core/controllers/narrowing.h"

#include "core/controllers/browstreecontroller.h"
#include "core/controllers/mainviewcontroller.h"
#include "core/controllers/relationscontroller.h"
#include "core/controllers/tagscontroller.h"
#include "models/contents/filefiltermodel.h"

#include <QSet>

#include <algorithm>

namespace {
bool containsAll(const QSet<qint64> &ids, const QVector<qint64> &wanted)
{
    return std::all_of(wanted.cbegin(), wanted.cend(), [&ids](qint64 id) { return ids.contains(id); });
}
} // namespace

Narrowing::Narrowing(MainViewController *mainView) : QObject(mainView), m_mainView(mainView) {}

void Narrowing::setPeers(TagsController *tags, BrowsTreeController *browsTree, RelationsController *relations)
{
    m_tags = tags;
    m_browsTree = browsTree;
    m_relations = relations;
}

TagRequirements Narrowing::present() const
{
    const FileFilterModel *filter = m_mainView->filterModel();
    return filter->nodeType() == TagNode ? filter->requirements() : TagRequirements();
}

QVector<qint64> Narrowing::below(const QVector<qint64> &tagIds) const
{
    return m_relations ? m_relations->descendantsOf(tagIds) : QVector<qint64>();
}

void Narrowing::require(const QVector<qint64> &tagIds)
{
    TagRequirements now = present();
    // One of one tag is that tag, and reads better in a row with the others.
    if (now.eitherOr.size() == 1) {
        const qint64 only = now.eitherOr.takeFirst();
        if (!now.required.contains(only)) {
            now.required.append(only);
            now.requiredAlternatives.insert(only, now.eitherOrWidened);
        }
        now.eitherOrWidened.clear();
    }
    for (const qint64 tagId : tagIds) {
        if (now.required.contains(tagId))
            continue;
        // A tag is asked for in one way only; the last word holds.
        forget(now, tagId);
        now.required.append(tagId);
        now.requiredAlternatives.insert(tagId, below({tagId}));
    }
    ask(now);
}

void Narrowing::exclude(qint64 tagId)
{
    TagRequirements now = present();
    forget(now, tagId);
    now.excluded.append(tagId);
    now.excludedWidened += below({tagId});
    ask(now);
}

void Narrowing::takeOff(qint64 tagId)
{
    TagRequirements now = present();
    forget(now, tagId);
    ask(now);
}

void Narrowing::forget(TagRequirements &requirements, qint64 tagId) const
{
    requirements.required.removeAll(tagId);
    requirements.requiredAlternatives.remove(tagId);
    if (requirements.eitherOr.removeAll(tagId) > 0)
        requirements.eitherOrWidened = below(requirements.eitherOr);
    if (requirements.excluded.removeAll(tagId) == 0)
        return;
    // Of the others some may stand for themselves alone.
    const QSet<qint64> before(requirements.excludedWidened.cbegin(), requirements.excludedWidened.cend());
    requirements.excludedWidened.clear();
    for (const qint64 other : qAsConst(requirements.excluded)) {
        const QVector<qint64> widened = below({other});
        if (containsAll(before, widened))
            requirements.excludedWidened += widened;
    }
}

void Narrowing::replace(qint64 target, const QVector<qint64> &others)
{
    TagRequirements now = present();
    bool isAsked = false;
    for (QVector<qint64> *ids : {&now.required, &now.eitherOr, &now.excluded}) {
        QVector<qint64> kept;
        for (const qint64 id : qAsConst(*ids)) {
            const qint64 tagId = others.contains(id) ? target : id;
            isAsked = isAsked || tagId != id;
            if (!kept.contains(tagId))
                kept.append(tagId);
        }
        *ids = kept;
    }
    if (!isAsked)
        return;
    QHash<qint64, QVector<qint64>> alternatives;
    for (const qint64 tagId : qAsConst(now.required)) {
        if (tagId == target || now.requiredAlternatives.contains(tagId))
            alternatives.insert(tagId, below({tagId}));
    }
    now.requiredAlternatives = alternatives;
    now.eitherOrWidened = below(now.eitherOr);
    now.excludedWidened = now.excludedWidened.isEmpty() ? QVector<qint64>() : below(now.excluded);
    ask(now);
}

void Narrowing::askAgain()
{
    TagRequirements now = present();
    for (auto it = now.requiredAlternatives.begin(); it != now.requiredAlternatives.end(); ++it)
        *it = below({it.key()});
    now.eitherOrWidened = below(now.eitherOr);
    // Nodes exclude a tag alone unless their option says otherwise.
    if (!now.excludedWidened.isEmpty())
        now.excludedWidened = below(now.excluded);
    ask(now);
}

void Narrowing::ask(const TagRequirements &requirements)
{
    if (m_browsTree)
        m_browsTree->clearCurrentNode();
    const QVector<qint64> marked = requirements.required + requirements.eitherOr;
    // The last tag was taken off: no requirement would show all files as well, but under no name.
    if (marked.isEmpty() && requirements.excluded.isEmpty()) {
        m_mainView->showSpecialNode(AllFiles);
        if (m_tags)
            m_tags->clearMark();
        return;
    }
    m_mainView->showTagRequirements(requirements.required, requirements.eitherOr, requirements.excluded,
                                    requirements.requiredAlternatives, requirements.eitherOrWidened,
                                    requirements.excludedWidened);
    if (m_tags)
        m_tags->markNarrowed(marked);
}
