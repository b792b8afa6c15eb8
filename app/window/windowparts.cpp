#include "app/window/windowparts.h"

#include "core/controllers/collection.h"
#include "ui/docks/browsingtreeviewdock.h"
#include "ui/docks/docktabbars.h"
#include "ui/docks/externalfilesdock.h"
#include "ui/docks/metainfodock.h"
#include "ui/docks/relationtreeviewdock.h"
#include "ui/docks/tagstabledock.h"
#include "ui/views/mainfilesview.h"
#include "ui/widgets/mainui.h"

#include <QLayout>
#include <QMainWindow>
#include <QToolBar>

namespace {
constexpr int tagsWidth = 165;
constexpr int treesWidth = 270;
constexpr int metadataHeight = 110;
constexpr int externalFilesHeight = 140;
} // namespace

WindowParts::WindowParts(QMainWindow *window)
    : QObject(window),
      m_window(window),
      m_files(new MainFilesView(window)),
      m_tagsDock(new TagsTableDock(window)),
      m_relationsDock(new RelationTreeViewDock(window)),
      m_metadataDock(new MetaInfoDock(window)),
      m_browsingDock(new BrowsingTreeViewDock(window)),
      m_externalFilesDock(new ExternalFilesDock(window))
{
    m_tagsDock->setObjectName(QStringLiteral("TagsDock"));
    m_relationsDock->setObjectName(QStringLiteral("RelationsDock"));
    m_metadataDock->setObjectName(QStringLiteral("MetaDataDock"));
    m_browsingDock->setObjectName(QStringLiteral("BrowsingTreeDock"));
    new DockTabBars(window);
    connect(m_files, &MainFilesView::fileSelected, m_metadataDock, &MetaInfoDock::selectFile);
    // Questions come when the drag has ended.
    connect(m_externalFilesDock, &ExternalFilesDock::filesDropped, m_files,
            &MainFilesView::extractFilesInFolder, Qt::QueuedConnection);
}

void WindowParts::takePlaces(MainUi &ui)
{
    m_files->takePlaces(ui);
    m_tagsDock->takePlaces(ui);
    m_browsingDock->takePlaces(ui);
}

void WindowParts::arrangeDocks()
{
    m_window->setDockOptions(QMainWindow::AllowNestedDocks | QMainWindow::AllowTabbedDocks);
    const QList<QDockWidget *> docks{m_tagsDock, m_externalFilesDock, m_metadataDock, m_relationsDock,
                                     m_browsingDock};
    for (QDockWidget *dock : docks)
        dock->setFloating(false);
    m_window->addDockWidget(Qt::LeftDockWidgetArea, m_tagsDock);
    m_window->addDockWidget(Qt::BottomDockWidgetArea, m_externalFilesDock);
    m_window->addDockWidget(Qt::RightDockWidgetArea, m_metadataDock);
    m_window->splitDockWidget(m_tagsDock, m_relationsDock, Qt::Horizontal);
    m_window->splitDockWidget(m_relationsDock, m_metadataDock, Qt::Vertical);
    m_window->tabifyDockWidget(m_relationsDock, m_browsingDock);
    for (QDockWidget *dock : docks)
        dock->show();
    m_browsingDock->raise();
    // The files are what the window is for: they get all room that the docks do not need.
    m_window->layout()->activate();
    m_window->resizeDocks({m_tagsDock, m_relationsDock}, {tagsWidth, treesWidth}, Qt::Horizontal);
    m_window->resizeDocks({m_externalFilesDock, m_relationsDock, m_metadataDock},
                          {externalFilesHeight, 3 * metadataHeight, metadataHeight}, Qt::Vertical);
}

void WindowParts::arrangeTabOrder(const MainUi &ui)
{
    QWidgetList parts;
    for (QToolBar *bar : ui.toolBars())
        parts << bar;
    parts << m_tagsDock << m_relationsDock << m_browsingDock << m_metadataDock << m_files
          << m_externalFilesDock;
    QWidget *before = nullptr;
    for (QWidget *part : qAsConst(parts)) {
        for (QWidget *control : part->findChildren<QWidget *>()) {
            if (!(control->focusPolicy() & Qt::TabFocus))
                continue;
            if (before)
                QWidget::setTabOrder(before, control);
            before = control;
        }
    }
}

void WindowParts::followReloads(Collection *collection)
{
    connect(collection, &Collection::allDataReloaded, m_browsingDock, &BrowsingTreeViewDock::updateTitle);
    m_browsingDock->followReloads(collection);
    m_relationsDock->followReloads(collection);
}

void WindowParts::attach(Collection &collection)
{
    m_tagsDock->setTagsController(collection.tagsController());
    m_tagsDock->setGroupsController(collection.groupsController());
    m_relationsDock->setController(collection.relationsController());
    m_browsingDock->setController(collection.browsTreeController());
    m_files->setController(collection.mainViewController());
    m_metadataDock->setController(collection.mainViewController());
    m_externalFilesDock->setController(collection.mainViewController());
}

void WindowParts::detach()
{
    m_browsingDock->setController(nullptr);
    m_tagsDock->setTagsController(nullptr);
    m_tagsDock->setGroupsController(nullptr);
    m_files->setController(nullptr);
    m_relationsDock->setController(nullptr);
    m_metadataDock->setController(nullptr);
    m_externalFilesDock->setController(nullptr);
}
