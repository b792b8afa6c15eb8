#pragma once

#include <QCoreApplication>
#include <QHash>
#include <QPair>
#include <QSet>
#include <QVector>

class ImportRun;

/**
 * Merges the browsing tree of the source into that of the open database. A node that stands there already,
 * of the same tag under the same parent, is that node; others are made. What stands below a node that does
 * not come along moves up to the nearest one that does.
 */
class NodeImporter
{
    Q_DECLARE_TR_FUNCTIONS(NodeImporter)

public:
    explicit NodeImporter(ImportRun &run) : m_run(run) {}

    void importNodes();

private:
    struct Node
    {
        qint64 tagId = 0; ///< of the open database; 0 for a node that does not come along
        qint64 options = 0;
        bool isInverted = false;
    };
    /** What makes two nodes the same: the parent, and the tag with its mark. */
    using Place = QPair<qint64, QPair<qint64, bool>>;

    void readSource();
    void readExisting();
    void walkFrom(qint64 root, qint64 newParent);
    qint64 settle(qint64 oldId, qint64 newParent);

    ImportRun &m_run;
    QHash<qint64, Node> m_nodes;
    QHash<qint64, QVector<qint64>> m_children; ///< of the source, by parent, in the order of ids
    QHash<qint64, qint64> m_parents;
    QHash<Place, QVector<qint64>> m_existing; ///< nodes that nobody was found to be yet, highest first
    QSet<qint64> m_settled;
    qint64 m_nextId = 1;
};
