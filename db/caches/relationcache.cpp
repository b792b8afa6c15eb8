#include "db/caches/relationcache.h"

#include <algorithm>

namespace {
const QLatin1Char separator('.');

QString parentOf(const QString &path)
{
    return path.left(qMax(0, path.lastIndexOf(separator)));
}

qint64 tagOf(const QString &path)
{
    return path.midRef(path.lastIndexOf(separator) + 1).toLongLong();
}
} // namespace

RelationCache::~RelationCache()
{
    for (const auto &item : qAsConst(m_nodes))
        delete item.second;
}

QList<TRnode *> RelationCache::replaceAll(const QStringList &paths, const NameOf &nameOf)
{
    QList<TRnode *> old;
    old.reserve(m_nodes.size());
    for (const auto &item : qAsConst(m_nodes))
        old.append(item.second);
    m_nodes.clear();
    m_nodesByPath.clear();
    add(paths, nameOf);
    return old;
}

RelationCache::Nodes RelationCache::add(const QStringList &paths, const NameOf &nameOf)
{
    // A path sorts behind each of its beginnings: parents come first.
    QStringList sorted = paths;
    sorted.sort();
    Nodes added;
    for (const QString &path : qAsConst(sorted)) {
        if (path.isEmpty() || m_nodesByPath.contains(path))
            continue;
        const qint64 tagId = tagOf(path);
        auto *node = new TRnode(tagId, nameOf(tagId));
        m_nodes.append({path, node});
        m_nodesByPath.insert(path, node);
        added.append({path, node});
        // Without one, at the top or damaged, the model puts it below its root.
        TRnode *parent = this->node(parentOf(path));
        if (parent)
            parent->addChild(node);
    }
    return added;
}

QSet<TRnode *> RelationCache::withDescendantNodes(const QStringList &paths) const
{
    QSet<TRnode *> found;
    QVector<TRnode *> open;
    for (const QString &path : paths) {
        if (TRnode *node = this->node(path))
            open.append(node);
    }
    while (!open.isEmpty()) {
        TRnode *node = open.takeLast();
        if (found.contains(node))
            continue;
        found.insert(node);
        for (TRnode *child : node->children())
            open.append(child);
    }
    return found;
}

QStringList RelationCache::withDescendants(const QStringList &paths) const
{
    const QSet<TRnode *> found = withDescendantNodes(paths);
    QStringList all;
    for (const auto &item : m_nodes) {
        if (found.contains(item.second))
            all.append(item.first);
    }
    return all;
}

QList<TRnode *> RelationCache::take(const QStringList &paths)
{
    const QSet<TRnode *> gone = withDescendantNodes(paths);
    // Only the branches: what stands below goes with them.
    QHash<TRnode *, QSet<TRnode *>> topsByParent;
    for (TRnode *node : gone) {
        TRnode *parent = node->parentNode();
        if (parent && !gone.contains(parent))
            topsByParent[parent].insert(node);
    }
    for (auto tops = topsByParent.cbegin(); tops != topsByParent.cend(); ++tops)
        tops.key()->removeChildren(*tops);
    // One pass over the list: taking the nodes out one by one would be quadratic.
    QVector<QPair<QString, TRnode *>> kept;
    kept.reserve(m_nodes.size());
    for (const auto &item : qAsConst(m_nodes)) {
        if (gone.contains(item.second))
            m_nodesByPath.remove(item.first);
        else
            kept.append(item);
    }
    Nodes remaining(kept);
    m_nodes.swap(remaining);
    return gone.values();
}

QStringList RelationCache::pathsWith(const QVector<qint64> &tagIds) const
{
    const QSet<qint64> wanted(tagIds.cbegin(), tagIds.cend());
    QStringList paths;
    for (const auto &item : m_nodes) {
        const QVector<QStringRef> pieces = item.first.splitRef(separator);
        const bool isHit = std::any_of(pieces.cbegin(), pieces.cend(), [&wanted](const QStringRef &piece) {
            return wanted.contains(piece.toLongLong());
        });
        if (isHit)
            paths.append(item.first);
    }
    return paths;
}

void RelationCache::renameTags(const QHash<qint64, QString> &namesByTag)
{
    for (const auto &item : qAsConst(m_nodes)) {
        const auto found = namesByTag.constFind(item.second->id());
        if (found != namesByTag.constEnd())
            item.second->setName(found.value());
    }
}
