#include "app/window/windowparts.h"

#include "app/settings/windowsettings.h"
#include "app/window/keptplaces.h"
#include "app/window/statusline.h"
#include "core/controllers/collection.h"
#include "ui/docks/browsingtreeviewdock.h"
#include "ui/docks/docktabbars.h"
#include "ui/docks/externalfilesdock.h"
#include "ui/docks/metainfodock.h"
#include "ui/docks/relationtreeviewdock.h"
#include "ui/docks/tagstabledock.h"
#include "ui/views/mainfilesview.h"
#include "ui/widgets/fontscale.h"
#include "ui/widgets/mainui.h"

#include <QAction>
#include <QLayout>
#include <QMainWindow>
#include <QMenu>
#include <QStatusBar>
#include <QStyle>
#include <QToolBar>

namespace {
constexpr int tagsWidth = 165;
constexpr int treesWidth = 270;
constexpr int mostTreesWidth = 400; // a tree may have any name
constexpr int metadataHeight = 110;
constexpr int externalFilesHeight = 140;

/** What the tabs of docks that lie on each other take, which are else cut. */
int tabsWidth(const QList<QDockWidget *> &docks)
{
    int width = 0;
    for (const QDockWidget *dock : docks)
        width += dock->fontMetrics().horizontalAdvance(dock->windowTitle()) +
                 dock->style()->pixelMetric(QStyle::PM_TabBarTabHSpace, nullptr, dock) +
                 dock->fontMetrics().averageCharWidth(); // a little more than the style tells
    return width;
}
} // namespace

WindowParts::WindowParts(QMainWindow *window)
    : QObject(window),
      m_window(window),
      m_files(new MainFilesView(window)),
      m_tagsDock(new TagsTableDock(window)),
      m_relationsDock(new RelationTreeViewDock(window)),
      m_metadataDock(new MetaInfoDock(window)),
      m_browsingDock(new BrowsingTreeViewDock(window)),
      m_externalFilesDock(new ExternalFilesDock(window)),
      m_status(new StatusLine(window->statusBar())),
      m_places(new KeptPlaces(window))
{
    m_tagsDock->setObjectName(QStringLiteral("TagsDock"));
    m_relationsDock->setObjectName(QStringLiteral("RelationsDock"));
    m_metadataDock->setObjectName(QStringLiteral("MetaDataDock"));
    m_browsingDock->setObjectName(QStringLiteral("BrowsingTreeDock"));
    new DockTabBars(window);
    // The name of a tree is not known before a database is open.
    connect(m_browsingDock, &QDockWidget::windowTitleChanged, this, &WindowParts::widenTrees);
    connect(m_files, &MainFilesView::statusTextChanged, m_status, &StatusLine::setText);
    connect(m_files, &MainFilesView::sizesChanged, m_status, &StatusLine::setSizes);
    connect(m_files, &MainFilesView::fileSelected, m_metadataDock, &MetaInfoDock::selectFile);
    m_metadataDock->setSharedFacts([this] { return m_files->selectedFiles().shared(); });
    // Questions come when the drag has ended.
    connect(m_externalFilesDock, &ExternalFilesDock::filesDropped, m_files,
            &MainFilesView::extractFilesInFolder, Qt::QueuedConnection);
}

void WindowParts::takePlaces(MainUi &ui)
{
    m_files->takePlaces(ui);
    m_tagsDock->takePlaces(ui);
    m_relationsDock->takePlaces(ui);
    m_browsingDock->takePlaces(ui);
    m_status->takePlace();
    takePlaceOfCounts(ui);
    ui.viewMenu->addSeparator();
    for (const QDockWidget *dock : docks())
        ui.viewMenu->addAction(dock->toggleViewAction());
}

void WindowParts::takePlaceOfCounts(MainUi &ui)
{
    QAction *counts = ui.viewMenu->addAction(tr("File Counts"));
    counts->setObjectName(QStringLiteral("fileCounts"));
    counts->setStatusTip(tr("Show how many files each tag and node has"));
    counts->setCheckable(true);
    counts->setChecked(WindowSettings::areFileCountsShown());
    connect(counts, &QAction::toggled, this, &WindowParts::showCounts);
}

void WindowParts::showCounts(bool shown)
{
    WindowSettings::setFileCountsShown(shown);
    if (m_collection)
        m_collection->countFiles(shown);
}

QList<QDockWidget *> WindowParts::docks() const
{
    return {m_tagsDock, m_relationsDock, m_browsingDock, m_metadataDock, m_externalFilesDock};
}

void WindowParts::arrangeDocks()
{
    m_window->setDockOptions(QMainWindow::AllowNestedDocks | QMainWindow::AllowTabbedDocks);
    for (QDockWidget *dock : docks())
        dock->setFloating(false);
    // The window mirrors its bars by itself, its docks not.
    const bool isMirrored = m_window->isRightToLeft();
    m_window->addDockWidget(isMirrored ? Qt::RightDockWidgetArea : Qt::LeftDockWidgetArea,
                            isMirrored ? static_cast<QDockWidget *>(m_relationsDock) : m_tagsDock);
    m_window->addDockWidget(Qt::BottomDockWidgetArea, m_externalFilesDock);
    m_window->addDockWidget(isMirrored ? Qt::LeftDockWidgetArea : Qt::RightDockWidgetArea, m_metadataDock);
    if (isMirrored)
        m_window->splitDockWidget(m_relationsDock, m_tagsDock, Qt::Horizontal);
    else
        m_window->splitDockWidget(m_tagsDock, m_relationsDock, Qt::Horizontal);
    m_window->splitDockWidget(m_relationsDock, m_metadataDock, Qt::Vertical);
    m_window->tabifyDockWidget(m_relationsDock, m_browsingDock);
    for (QDockWidget *dock : docks())
        dock->show();
    m_browsingDock->raise();
    // The files are what the window is for: they get all room that the docks do not need.
    m_window->layout()->activate();
    const auto byFont = [this](int pixels) { return FontScale::byFont(pixels, m_window); };
    m_window->resizeDocks({m_tagsDock, m_relationsDock},
                          {qMax(byFont(tagsWidth), m_tagsDock->tabsWidth()), wantedTreesWidth()},
                          Qt::Horizontal);
    m_window->resizeDocks({m_externalFilesDock, m_relationsDock, m_metadataDock},
                          {byFont(externalFilesHeight), 3 * byFont(metadataHeight), byFont(metadataHeight)},
                          Qt::Vertical);
    m_window->layout()->activate();
    m_treesWidth = m_browsingDock->width();
}

int WindowParts::wantedTreesWidth() const
{
    return qBound(FontScale::byFont(treesWidth, m_window), tabsWidth({m_relationsDock, m_browsingDock}),
                  FontScale::byFont(mostTreesWidth, m_window));
}

void WindowParts::widenTrees()
{
    // What somebody has dragged to another width stays as it is.
    m_window->layout()->activate();
    const int wanted = wantedTreesWidth();
    if (wanted <= m_treesWidth || m_browsingDock->isFloating() || m_browsingDock->width() != m_treesWidth)
        return;
    m_window->resizeDocks({m_browsingDock}, {wanted}, Qt::Horizontal);
    m_window->layout()->activate();
    m_treesWidth = m_browsingDock->width();
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
    connect(collection, &Collection::aboutToMergeForeignChanges, m_places, &KeptPlaces::note);
    connect(collection, &Collection::foreignChangesShown, m_places, &KeptPlaces::restore);
    connect(collection, &Collection::foreignChangesMerged, m_status, &StatusLine::tellNews);
    connect(collection, &Collection::happened, m_status, &StatusLine::tell);
    connect(collection, &Collection::allDataReloaded, m_browsingDock, &BrowsingTreeViewDock::updateTitle);
    m_browsingDock->followReloads(collection);
    m_relationsDock->followReloads(collection);
}

void WindowParts::attach(Collection &collection)
{
    m_collection = &collection;
    collection.countFiles(WindowSettings::areFileCountsShown());
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
