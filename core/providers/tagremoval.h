#pragma once

#include "core/providers/noderemover.h"

class RelationTreeProvider;
class TagsProvider;

/** All that goes with a list of tags. Computed from the records by the caller. */
struct TagRemovalPlan : NodeRemovalPlan
{
    QVector<qint64> tagIds;
    QStringList removedPaths;
};

/**
 * Removes tags with everything that refers to them (files' and groups' links, nodes, relationship paths,
 * linked folders) in one transaction: all of it or nothing. The providers of tags, nodes and relationships do
 * it and have their news ready when run() gives true. Lives for one removal on the stack of its caller, GUI
 * thread, default connection.
 */
class TagRemover : public NodeRemover
{
    Q_OBJECT

public:
    TagRemover(const AbstractQueryConstructor *constructor, TagsProvider &tags, BrowsTreeProvider &nodes,
               RelationTreeProvider &relations, QObject *parent = nullptr);

    bool run(const TagRemovalPlan &plan);
    /** The files that had one of the tags, each once, ascending. */
    const QVector<qint64> &unlinkedFileIds() const { return m_unlinkedFileIds; }

private:
    using Pairs = QVector<QPair<qint64, qint64>>;

    bool removeTags(const TagRemovalPlan &plan);
    bool unlinkFiles(const QVector<qint64> &tagIds);
    /** Nodes of the tags that the records did not hold: those of other trees, or just added by the worker. */
    bool removeUnknownNodes(const QVector<qint64> &tagIds);
    /** Appends two columns of the rows whose column is one of the ids. */
    bool readPairs(const QString &first, const QString &second, const QString &table, const QString &column,
                   const QVector<qint64> &ids, Pairs &pairs);

    TagsProvider &m_tags;
    RelationTreeProvider &m_relations;
    QVector<qint64> m_unlinkedFileIds;
};
