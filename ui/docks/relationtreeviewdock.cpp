#include "ui/docks/relationtreeviewdock.h"

#include "core/controllers/collection.h"
#include "ui/docks/relationtyping.h"
#include "ui/tagging/namesline.h"
#include "ui/views/trview.h"
#include "ui/widgets/mainui.h"

#include <QMenu>

RelationTreeViewDock::RelationTreeViewDock(QWidget *parent)
    : TreeViewDock(tr("Tag Relationships"), new TRview, parent),
      m_view(findChild<TRview *>()),
      m_typing(new RelationTyping(m_view, this))
{
    putAboveTree(m_typing->line());
    connect(m_typing, &RelationTyping::opening, this, [this] {
        // The commands are in the window's menu, too, from where the dock may lie behind another one's tab.
        show();
        raise();
        m_view->setFocus();
    });
}

void RelationTreeViewDock::takePlaces(MainUi &ui)
{
    m_typing->addTo(*ui.tagMenu->addMenu(windowTitle()));
}

void RelationTreeViewDock::setController(RelationsController *controller)
{
    m_view->setController(controller);
    m_typing->setController(controller);
}

void RelationTreeViewDock::followReloads(Collection *collection)
{
    connect(collection, &Collection::aboutToReloadAllData, m_view, &TRview::saveExpandedState);
    connect(collection, &Collection::allDataReloaded, m_view, &TRview::restoreExpandedState);
}
