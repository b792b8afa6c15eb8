#pragma once

#include <QHash>
#include <QPersistentModelIndex>
#include <QTreeView>

class RelationsController;

/**
 * The tag relationship trees as a surface for gestures: a tag dropped on an entry becomes its child, an entry
 * dropped on another takes its subtree along. Borrows its controller.
 */
class TRview : public QTreeView
{
    Q_OBJECT

public:
    explicit TRview(QWidget *parent = nullptr);

    /** Null takes the trees away. */
    void setController(RelationsController *controller);

signals:
    void tagRelationshipNotAllowed();

public slots:
    void deleteSelectedNode();
    /** Deletes the current entry and all below it, without a question. */
    void deleteSelectedSubtree();
    void saveExpandedState();
    void restoreExpandedState();

protected:
    void startDrag(Qt::DropActions supportedActions) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dragLeaveEvent(QDragLeaveEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    bool isWritable() const;
    bool takes(const QDropEvent &event) const;
    bool confirmDeletion();
    void showRefusal();
    void makeCurrent(const QModelIndex &index);
    void openContextMenu(const QPoint &position);
    /** Makes tags, each with the subtree of the entry that it was dragged from, children of a path. */
    bool addBelow(const QString &parentPath, qint64 tagId, const QString &sourcePath);
    void copySubtree(const QString &sourcePath, const QString &targetPath);
    void collectExpanded(const QModelIndex &parent, QHash<QString, bool> &state) const;

    RelationsController *m_controller = nullptr;
    QPersistentModelIndex m_currentBeforeDrag;
    QHash<QString, bool> m_expandedPaths;
    QString m_currentPath;
    QHash<qint64, QString> m_draggedPaths; ///< by tag; empty but in a drag of entries of this tree
};
