#pragma once

#include "app/constants.h"
#include "models/brtreesortermodel.h"
#include "models/idlistmime.h"
#include "models/treeroles.h"
#include "models/trmodel.h"
#include "tests/support/collectionfixture.h"
#include "ui/docks/browsingtreeviewdock.h"
#include "ui/docks/relationtreeviewdock.h"
#include "ui/mainui.h"
#include "ui/views/tbtreeview.h"
#include "ui/views/trview.h"

#include <QDropEvent>
#include <QMainWindow>
#include <QMenu>
#include <QMimeData>

/** A collection in a real window with both docks. */
class TreeWindow : public CollectionFixture
{
public:
    TreeWindow() : ui(&window), nodes(new BrowsingTreeViewDock), relationsDock(new RelationTreeViewDock)
    {
        window.resize(700, 700);
        window.addDockWidget(Qt::LeftDockWidgetArea, nodes);
        window.addDockWidget(Qt::RightDockWidgetArea, relationsDock);
        nodes->takePlaces(ui);
        attach();
        window.show();
    }
    ~TreeWindow() { detach(); }

    void attach()
    {
        nodes->setController(&tree());
        relationsDock->setController(&relations());
        nodes->followReloads(get());
        relationsDock->followReloads(get());
    }
    void detach()
    {
        nodes->setController(nullptr);
        relationsDock->setController(nullptr);
    }

    TBtreeView *nodeView() { return nodes->findChild<TBtreeView *>(QStringLiteral("tbView")); }
    TRview *relationView() { return relationsDock->findChild<TRview *>(QStringLiteral("trView")); }
    QModelIndex node(qint64 id) { return tree().sorterModel()->indexOfNode(TagNode, id); }
    QModelIndex fixedNode(NodeType type) { return tree().sorterModel()->indexOfNode(type, 0); }
    QModelIndex relation(const char *path) { return relations().model()->indexOfPath(QLatin1String(path)); }

    /** The tree as names with their children in brackets: "a[b c]". */
    QString outline() { return outlineBelow(fixedNode(AllFiles)).trimmed(); }
    QString paths()
    {
        return rows(QStringLiteral("SELECT * FROM tag_relationships ORDER BY 1")).join(QLatin1Char(' '));
    }

    QMainWindow window;
    MainUi ui;
    BrowsingTreeViewDock *nodes;
    RelationTreeViewDock *relationsDock;

private:
    static QString outlineBelow(const QModelIndex &parent)
    {
        QString text;
        for (int row = 0; row < parent.model()->rowCount(parent); ++row) {
            const QModelIndex child = parent.model()->index(row, 0, parent);
            if (child.data(NodeRole::Type).toInt() != TagNode)
                continue;
            const QString below = outlineBelow(child);
            text += QLatin1Char(' ') + child.data().toString();
            if (!below.isEmpty())
                text += QLatin1Char('[') + below.trimmed() + QLatin1Char(']');
        }
        return text;
    }
};

/** Drags data into a view and lets it fall there, as the window system would. The action that was taken. */
inline Qt::DropAction drop(QTreeView *view, const QPoint &at, const QMimeData &data,
                           Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    const Qt::DropActions actions = Qt::CopyAction | Qt::MoveAction;
    QWidget *viewport = view->viewport();
    QDragEnterEvent enter(at, actions, &data, Qt::LeftButton, modifiers);
    QCoreApplication::sendEvent(viewport, &enter);
    QDragMoveEvent move(at, actions, &data, Qt::LeftButton, modifiers);
    move.setDropAction(Qt::MoveAction);
    move.ignore();
    if (enter.isAccepted())
        QCoreApplication::sendEvent(viewport, &move);
    if (!move.isAccepted()) {
        QDragLeaveEvent leave;
        QCoreApplication::sendEvent(viewport, &leave);
        return Qt::IgnoreAction;
    }
    QDropEvent fall(at, actions, &data, Qt::LeftButton, modifiers);
    fall.setDropAction(move.dropAction());
    QCoreApplication::sendEvent(viewport, &fall);
    return fall.isAccepted() ? fall.dropAction() : Qt::IgnoreAction;
}

inline QPoint centreOf(QTreeView *view, const QModelIndex &index)
{
    view->scrollTo(index);
    return view->visualRect(index).center();
}

inline std::unique_ptr<QMimeData> tagDrag(const QVector<qint64> &ids)
{
    return std::unique_ptr<QMimeData>(IdListMime::pack(Constants::tagMimeType, ids));
}
