#pragma once

#include "models/trees/brtreesortermodel.h"
#include "models/trees/treeroles.h"
#include "models/trees/trmodel.h"
#include "tests/support/drags.h"
#include "tests/support/localcollection.h"
#include "ui/docks/browsingtreeviewdock.h"
#include "ui/docks/relationtreeviewdock.h"
#include "ui/views/tbtreeview.h"
#include "ui/views/trview.h"
#include "ui/widgets/mainui.h"

#include <QMainWindow>
#include <QMenu>

/** A collection in a real window with both docks. */
class TreeWindow : public LocalCollection
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

    TBtreeView *nodeView() { return nodes->findChild<TBtreeView *>("tbView"_s); }
    TRview *relationView() { return relationsDock->findChild<TRview *>("trView"_s); }
    QModelIndex node(qint64 id) { return tree().sorterModel()->indexOfNode(TagNode, id); }
    QModelIndex fixedNode(NodeType type) { return tree().sorterModel()->indexOfNode(type, 0); }
    QModelIndex relation(const char *path) { return relations().model()->indexOfPath(QLatin1String(path)); }

    /** The tree as names with their children in brackets: "a[b c]". */
    QString outline() { return outlineBelow(fixedNode(AllFiles)).trimmed(); }
    QString paths() { return rows("SELECT * FROM tag_relationships ORDER BY 1"_s).join(QLatin1Char(' ')); }

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

inline QPoint centreOf(QTreeView *view, const QModelIndex &index)
{
    view->scrollTo(index);
    return view->visualRect(index).center();
}
