#pragma once

#include "ui/widgets/branchview.h"

#include <QHash>

class RelationsController;

/**
 * The tag relationship trees as a surface for gestures: a tag dropped on an entry becomes its child, an entry
 * dropped on another takes its subtree along. Borrows its controller.
 */
class TRview : public BranchView
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
    void dropEvent(QDropEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void updateGround();
    bool isWritable() const;
    bool takes(const QDropEvent &event) const;
    bool confirmDeletion();
    void showRefusal();
    void openContextMenu(const QPoint &position);
    /** Makes tags children of a path, up to the first one that must not be; false when there is one. */
    bool addBelow(const QString &parentPath, const QVector<qint64> &tagIds);
    /** The same for entries of this tree, each with its subtree. */
    bool addDragged(const QString &parentPath, const QVector<qint64> &tagIds);
    bool addWithSubtree(const QString &parentPath, qint64 tagId, const QString &sourcePath);
    /** Whether a tag of the subtree stands on the way to its new place: it would be its own ancestor. */
    bool isBelowOwnTag(const QString &parentPath, const QString &sourcePath) const;
    void copySubtree(const QString &sourcePath, const QString &targetPath);
    void collectExpanded(const QModelIndex &parent, QHash<QString, bool> &state) const;

    RelationsController *m_controller = nullptr;
    QHash<QString, bool> m_expandedPaths;
    QString m_currentPath;
    int m_scrollPosition = 0;
    QHash<qint64, QString> m_draggedPaths; ///< by tag; empty but in a drag of entries of this tree
};
