#pragma once

#include "core/records/nodestep.h"
#include "models/contents/tagrequirements.h"

#include <QVector>

class TBnode;

/**
 * The way of nodes, one below the other, whose last one shows what requirements by tags show: the tags
 * required in their order, then the excluded ones as inverted nodes.
 */
class NodePath
{
public:
    explicit NodePath(const TagRequirements &requirements);

    /** A way has no place for a choice among several tags, and shows nothing without a tag that is required.
     */
    bool isPossible() const { return !m_steps.isEmpty(); }
    const QVector<NodeStep> &steps() const { return m_steps; }

    /** The last node of the way that is there already below the top, which is given where none is; and how
     * many steps lead to it. */
    const TBnode *standing(const TBnode *top, int &stepCount) const;

private:
    QVector<NodeStep> m_steps;
};
