#pragma once

#include <QList>
#include <QSet>
#include <QVector>

#include <algorithm>

/**
 * The children that leave a node together, for the signals that tell of them: models turn each into a run of
 * rows. A node of trees tells its children().
 */
namespace ChildRuns {
/** More runs than these cost models more than to read all children anew. */
constexpr int mostRuns = 50;

template <class Node>
struct Run
{
    int first = 0; ///< -1 when they do not stand next to each other
    QList<Node *> nodes;
};

/** The runs of those that go, the last one first; more than mostRuns as one. */
template <class Node>
QVector<Run<Node>> of(const QList<Node *> &children, const QSet<Node *> &going)
{
    QVector<Run<Node>> runs;
    Run<Node> all{-1, {}};
    for (int i = 0; i < children.size(); ++i) {
        Node *child = children.at(i);
        if (!going.contains(child))
            continue;
        if (runs.isEmpty() || runs.last().first + runs.last().nodes.size() != i)
            runs.append(Run<Node>{i, {}});
        runs.last().nodes.append(child);
        all.nodes.append(child);
    }
    if (runs.size() > mostRuns)
        return {all};
    std::reverse(runs.begin(), runs.end());
    return runs;
}

/** The children without those of a run. */
template <class Node>
void take(QList<Node *> &children, const Run<Node> &run)
{
    if (run.first >= 0) {
        const auto first = children.begin() + run.first;
        children.erase(first, first + run.nodes.size());
        return;
    }
    const QSet<Node *> gone(run.nodes.cbegin(), run.nodes.cend());
    const auto isGone = [&gone](Node *child) { return gone.contains(child); };
    children.erase(std::remove_if(children.begin(), children.end(), isGone), children.end());
}

/** Whether the nodes are a run of the children of the parent, from the first one's row on. */
template <class Node>
bool isRun(const Node &parent, const QList<Node *> &nodes, int first)
{
    for (int i = 0; i < nodes.size(); ++i) {
        if (first < 0 || parent.childAt(first + i) != nodes.at(i))
            return false;
    }
    return true;
}
} // namespace ChildRuns
