#include "core/controllers/nodepath.h"

#include "core/records/tbnode.h"

#include <algorithm>

NodePath::NodePath(const TagRequirements &requirements)
{
    // A path of nodes asks for all of its tags; it cannot say "one of".
    if (requirements.eitherOr.size() > 1 || (requirements.required + requirements.eitherOr).isEmpty())
        return;
    const auto &alternatives = requirements.requiredAlternatives;
    const bool isWidened = !requirements.eitherOrWidened.isEmpty() ||
                           !requirements.excludedWidened.isEmpty() ||
                           std::any_of(alternatives.cbegin(), alternatives.cend(),
                                       [](const auto &ids) { return !ids.isEmpty(); });
    for (const qint64 tagId : requirements.required + requirements.eitherOr)
        m_steps.append({tagId, false, true});
    for (const qint64 tagId : requirements.excluded)
        m_steps.append({tagId, true, true});
    // The option of the node that is chosen counts alone.
    const bool hasOption = isWidened || alternatives.size() == requirements.required.size();
    m_steps.last().trOption = hasOption;
}

const TBnode *NodePath::standing(const TBnode *top, int &stepCount) const
{
    const TBnode *node = top;
    for (stepCount = 0; stepCount < m_steps.size(); ++stepCount) {
        const NodeStep &step = m_steps.at(stepCount);
        // The option of nodes on the way does not matter, so that any of them serves.
        const bool isLast = stepCount == m_steps.size() - 1;
        const auto &children = node->children();
        const auto isStep = [&](const TBnode *child) {
            return child->nodeType() == TagNode && child->tagId() == step.tagId &&
                   child->isInverted() == step.inverted && (!isLast || child->trOption() == step.trOption);
        };
        const auto next = std::find_if(children.cbegin(), children.cend(), isStep);
        if (next == children.cend())
            break;
        node = *next;
    }
    return node;
}
