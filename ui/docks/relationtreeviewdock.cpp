#include "ui/docks/relationtreeviewdock.h"

#include "core/controllers/collection.h"
#include "ui/views/trview.h"

RelationTreeViewDock::RelationTreeViewDock(QWidget *parent)
    : TreeViewDock(tr("Tag Relationships"), new TRview, parent), m_view(static_cast<TRview *>(widget()))
{
}

void RelationTreeViewDock::setController(RelationsController *controller)
{
    m_view->setController(controller);
}

void RelationTreeViewDock::followReloads(Collection *collection)
{
    connect(collection, &Collection::aboutToReloadAllData, m_view, &TRview::saveExpandedState);
    connect(collection, &Collection::allDataReloaded, m_view, &TRview::restoreExpandedState);
}
