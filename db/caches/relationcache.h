#pragma once

#include "core/records/trnode.h"
#include "core/records/vector.h"

#include <QHash>
#include <QPair>
#include <QSet>
#include <QStringList>
#include <QVector>

#include <functional>

/**
 * The forest of tag relationships: each path of tag ids with its node, owned, a parent always before its
 * children. The parent of a top-level node stays null until a model attaches it to its root. GUI thread.
 */
class RelationCache
{
public:
    using Nodes = Vector<QPair<QString, TRnode *>>;
    using NameOf = std::function<QString(qint64 tagId)>;

    RelationCache() = default;
    ~RelationCache();
    RelationCache(const RelationCache &) = delete;
    RelationCache &operator=(const RelationCache &) = delete;

    Nodes &nodes() { return m_nodes; }
    const Nodes &nodes() const { return m_nodes; }
    /** Null for an unknown path. */
    TRnode *node(const QString &path) const { return m_nodesByPath.value(path, nullptr); }
    bool contains(const QString &path) const { return m_nodesByPath.contains(path); }

    /** Makes the forest of the paths and gives the old nodes for deletion. */
    QList<TRnode *> replaceAll(const QStringList &paths, const NameOf &nameOf);

    /** Adds the paths that are not known yet; gives the new nodes. */
    Nodes add(const QStringList &paths, const NameOf &nameOf);

    /** Takes paths out of the forest with all below them; the caller becomes the owner of the nodes. */
    QList<TRnode *> take(const QStringList &paths);

    /** The known ones of the paths and all paths below them. */
    QStringList withDescendants(const QStringList &paths) const;

    /** The paths in which one of the tags is a piece. */
    QStringList pathsWith(const QVector<qint64> &tagIds) const;

    /** Gives every place of these tags the new name of its tag. */
    void renameTags(const QHash<qint64, QString> &namesByTag);

private:
    QSet<TRnode *> withDescendantNodes(const QStringList &paths) const;

    Nodes m_nodes;
    QHash<QString, TRnode *> m_nodesByPath;
};
