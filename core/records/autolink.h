#pragma once

#include <QHash>
#include <QObject>
#include <QString>
#include <QVector>

/**
 * A folder on disk that is linked to one or more browsing nodes of a local database. Made and owned by the
 * cache of the manager; GUI thread only. A flagged node still has to take in what is new in the folder.
 */
class AutoLink : public QObject
{
    Q_OBJECT

public:
    AutoLink(const QString &absPath, const QString &relPath, const QString &linkId,
             QObject *parent = nullptr);

    QString linkId() const { return m_linkId; }
    QString absPath() const { return m_absPath; }
    QString relPath() const { return m_relPath; }
    void setAbsPath(const QString &absPath) { m_absPath = absPath; }
    void setRelPath(const QString &relPath) { m_relPath = relPath; }

    QVector<qint64> nodes() const { return m_nodes; }
    QHash<qint64, bool> flaggedNodes() const { return m_flaggedNodes; }

    void addNode(qint64 nodeId, bool flagged);
    void removeNode(qint64 nodeId);
    void flagAll();
    bool isFlagged(qint64 nodeId) const { return m_flaggedNodes.contains(nodeId); }
    void unflag(qint64 nodeId) { m_flaggedNodes.remove(nodeId); }

private:
    QString m_linkId;
    QString m_absPath;
    QString m_relPath;
    QVector<qint64> m_nodes;
    // Only the keys count: a node is in it while it is flagged.
    QHash<qint64, bool> m_flaggedNodes;
};
