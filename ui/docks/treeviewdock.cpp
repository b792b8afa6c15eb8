#include "ui/docks/treeviewdock.h"

#include <QTreeView>

TreeViewDock::TreeViewDock(const QString &title, QTreeView *view, QWidget *parent)
    : AbstractDock(title, parent)
{
    setWidget(view);
    view->setEnabled(false);
}
