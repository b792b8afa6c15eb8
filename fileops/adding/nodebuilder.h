#pragma once

#include <QHash>
#include <QString>
#include <QVector>

class FileOperationWorker;
struct ExpandedFolder;

/** Makes browsing nodes out of dropped folders within the running transaction of the worker. */
class NodeBuilder
{
public:
    /** `limit` counts folder levels, the dropped folder being the first. */
    NodeBuilder(FileOperationWorker &worker, const QHash<QString, qint64> &tagIdsByName, bool isLimited,
                int limit);

    /**
     * One node a folder below the node of the folder above it, dropped folders below `nodeId`. A dropped
     * folder whose tag stands there already is left out with all below it. The ids of the new nodes.
     */
    QVector<qint64> build(const QVector<ExpandedFolder> &folders, qint64 nodeId);

private:
    bool isChildNamed(qint64 parentId, const QString &tagName);
    qint64 addNode(qint64 parentId, qint64 tagId);

    FileOperationWorker &m_worker;
    QHash<QString, qint64> m_tagIdsByName;
    bool m_isLimited;
    int m_limit;
};
