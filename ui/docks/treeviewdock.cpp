#include "ui/docks/treeviewdock.h"

#include <QTreeView>
#include <QVBoxLayout>

TreeViewDock::TreeViewDock(const QString &title, QTreeView *view, QWidget *parent)
    : AbstractDock(title, parent)
{
    auto *form = new QWidget(this);
    m_layout = new QVBoxLayout(form);
    m_layout->setContentsMargins(0, 0, 0, 0);
    m_layout->setSpacing(0);
    m_layout->addWidget(view);
    // The focus that is given to the dock is meant for the tree.
    form->setFocusProxy(view);
    setWidget(form);
    view->setEnabled(false);
}

void TreeViewDock::putAboveTree(QWidget *line)
{
    m_layout->insertWidget(0, line);
}
