#pragma once

#include <QVector>

/**
 * Ways through trees of nodes, without recursion: a damaged or crafted database may chain more nodes than a
 * stack has room for. A node tells its parentNode() and its children().
 */
namespace TreeWalk {
/** The node and all below it: each before those below it, and of its children the last one first. */
template <class Node>
QVector<Node *> branch(Node *top)
{
    QVector<Node *> found;
    QVector<Node *> open{top};
    while (!open.isEmpty()) {
        Node *node = open.takeLast();
        found.append(node);
        for (Node *child : node->children())
            open.append(child);
    }
    return found;
}

/**
 * The views of the toolkit and its proxies do recurse into what they show, and paint a row in a time that
 * grows with its level. So no more levels than these are shown, far more than anybody makes.
 */
constexpr int mostShownLevels = 500;

/** True when a node stands so deep that what is below it is not shown. */
template <class Node>
bool hidesChildren(const Node &node)
{
    int level = 0;
    for (const Node *above = node.parentNode(); above && level < mostShownLevels; above = above->parentNode())
        ++level;
    return level >= mostShownLevels;
}
} // namespace TreeWalk
