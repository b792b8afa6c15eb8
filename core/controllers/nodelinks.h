#pragma once

#include <QString>

class BrowsTreeController;
class DatabaseManger;

/** The folders that are linked to nodes, for who shows the browsing tree. Owned by its controller. */
class NodeLinks
{
public:
    /** The manager may be null: then there are none. */
    NodeLinks(BrowsTreeController &controller, DatabaseManger *manager)
        : m_controller(controller), m_manager(manager)
    {
    }

    /** False on a server, whose clients have different disks. */
    bool arePossible() const;
    /** Links a node to a folder, in the place of the one that it has. */
    void link(qint64 nodeId, const QString &folder);
    /** Takes the link off the node; the files that it brought stay. */
    void unlink(qint64 nodeId);
    /** Empty for a node without a link. */
    QString absolutePath(qint64 nodeId) const;
    QString relativePath(qint64 nodeId) const;
    /** A node was selected: what is new in its folder comes, if the settings say so. */
    void nodeSelected(qint64 nodeId);

private:
    QString linkOf(qint64 nodeId) const;

    BrowsTreeController &m_controller;
    DatabaseManger *m_manager;
};
