#include "ui/views/fileactions.h"

#include "app/settings/windowsettings.h"
#include "ui/widgets/fontscale.h"
#include "ui/widgets/mainui.h"

#include <QActionGroup>
#include <QLineEdit>
#include <QMenu>
#include <QToolBar>

FileActions::FileActions(QObject *parent) : QObject(parent)
{
    makeActions();
}

QAction *FileActions::add(Key key, const QString &text, const char *objectName, const char *icon)
{
    auto *action = new QAction(text, this);
    action->setObjectName(QLatin1String(objectName));
    if (icon)
        action->setIcon(QIcon(QLatin1String(icon)));
    m_actions.insert(key, action);
    return action;
}

void FileActions::makeActions()
{
    add(List, tr("List"), "listAction", ":icons/listView.png")->setCheckable(true);
    add(Thumbnails, tr("Thumbnails"), "thumbnailsAction", ":icons/iconView.png")->setCheckable(true);
    add(FileSearch, tr("File Search"), "fileSearchAction", ":icons/search.png")->setCheckable(true);
    add(AddFiles, tr("Add Files"), "addFilesAction", ":/icons/addFiles.png");
    add(AddHyperlink, tr("Add Hyperlink"), "addHyperlinkAction", ":/icons/add-hyperlink.png");
    add(LocateMissingFiles, tr("Locate Missing Files"), "locateMissingFilesAction");
    add(TransferToInternal, tr("Transfer to Internal"), "transferToInternalAction");
    add(ExtractFiles, tr("Extract Files"), "extractFilesAction", ":/icons/extract.png");
    add(RemoveFromNode, tr("Remove from node"), "removeFromNodeAction")->setData(qint64(0));
    add(Delete, tr("Delete"), "deleteFilesAction", ":/icons/delete.png");
    add(FileTags, tr("File Tags"), "fileTagsAction", ":icons/tag.png");
    add(BrowsingTreeTags, tr("Browsing Tree Tags"), "browsingTreeTagsAction");
    add(OpenExternally, tr("Open for Viewing"), "openExternallyAction");
    add(ShowInFileManager, tr("Show in Explorer"), "showInExplorerAction");
    add(DeleteFromContext, tr("Delete"), "deleteFromContextAction", ":/icons/delete.png");
    add(ExtractFromContext, tr("Extract File"), "extractFromContextAction", ":icons/extract.png");
    add(Properties, tr("Properties"), "propertiesAction");
    add(ShowRelated, tr("Show related files"), "showRelatedAction");
    add(LocateFromContext, tr("Locate missing item"), "locateFromContextAction");

    auto *group = new QActionGroup(this);
    group->addAction(action(Thumbnails));
    group->addAction(action(List));
}

void FileActions::takePlaces(MainUi &ui)
{
    m_actions.insert(FileMenu, ui.fileMenu->menuAction());
    m_actions.insert(LinkTags, ui.linkTagsToFiles);
    fillFileMenu(*ui.fileMenu);
    for (const Key key : {ExtractFiles, AddFiles, AddHyperlink})
        ui.fileToolsBar->addAction(action(key));
    makeViewMode(ui);
    makeSearch(ui);
}

void FileActions::fillFileMenu(QMenu &menu)
{
    auto *tags = new QMenu(tr("Tags"), &menu);
    tags->addActions({action(FileTags), action(BrowsingTreeTags)});
    m_actions.insert(TagsMenu, tags->menuAction());
    for (const Key key : {AddFiles, AddHyperlink, LocateMissingFiles, TransferToInternal, ExtractFiles,
                          RemoveFromNode, Delete, TagsMenu, LinkTags})
        menu.addAction(action(key));
}

void FileActions::makeViewMode(MainUi &ui)
{
    ui.viewModeBar->addAction(action(Thumbnails));
    ui.viewModeBar->addAction(action(List));
    action(WindowSettings::showIconView() ? Thumbnails : List)->setChecked(true);
}

void FileActions::makeSearch(MainUi &ui)
{
    m_searchEdit = ui.searchEdit;
    ui.searchEdit->setMinimumWidth(FontScale::byFont(200, ui.searchEdit));
    ui.searchEdit->setMaximumWidth(FontScale::byFont(320, ui.searchEdit));
    ui.searchFilesBar->addAction(action(FileSearch));
    QAction *line = ui.searchFilesBar->addWidget(ui.searchEdit);
    m_actions.insert(SearchLine, line);

    const bool isVisible = WindowSettings::isFileSearchLineVisible();
    line->setVisible(isVisible);
    action(FileSearch)->setChecked(isVisible);
    connect(action(FileSearch), &QAction::toggled, this, [this](bool on) {
        action(SearchLine)->setVisible(on);
        WindowSettings::setFileSearchLineVisible(on);
        if (on && m_searchEdit)
            m_searchEdit->setFocus();
    });
}

void FileActions::updateAvailability(const Situation &situation)
{
    const auto setEnabled = [this](Key key, bool enabled) {
        if (QAction *known = action(key))
            known->setEnabled(enabled);
    };
    for (const Key key : {FileMenu, AddFiles, AddHyperlink})
        setEnabled(key, situation.isWritable);
    setEnabled(LocateMissingFiles, situation.hasMissing);
    // The context menu offers it for external files, by its own rule.
    setEnabled(TransferToInternal, situation.hasSelection && situation.areAllInternal);
    setEnabled(ExtractFiles, situation.hasSelection && !situation.hasHyperlink);
    action(RemoveFromNode)->setData(situation.nodeId);
    setEnabled(RemoveFromNode, situation.hasSelection && situation.nodeId > 0);
    setEnabled(Delete, situation.hasSelection);
    for (const Key key : {FileTags, BrowsingTreeTags, LinkTags})
        setEnabled(key, situation.hasSelection && situation.isWritable);
}

QString FileActions::deleteText(const SelectedFilesFacts &facts)
{
    const bool isOne = facts.count == 1;
    if (facts.areAllInternal)
        return isOne ? tr("Delete File") : tr("Delete Files");
    if (facts.hasHyperlink || facts.areAllExternal)
        return isOne ? tr("Delete Link") : tr("Delete Links");
    return isOne ? tr("Delete Item") : tr("Delete Items");
}

void FileActions::fillContextMenu(QMenu &menu, const SelectedFilesFacts &facts, bool isWritable)
{
    const bool isOne = facts.count == 1;
    if (facts.areAllExternal && facts.hasMissing) {
        action(LocateFromContext)->setText(isOne ? tr("Locate missing file") : tr("Locate missing files"));
        menu.addAction(action(LocateFromContext));
    }
    if (!facts.hasMissing && isOne) {
        action(OpenExternally)->setText(facts.isPicture ? tr("Open Externally") : tr("Open for Viewing"));
        menu.addAction(action(OpenExternally));
    }
    if (facts.areAllExternal && !facts.hasMissing) {
        if (isOne)
            menu.addAction(action(ShowInFileManager));
        if (isWritable && facts.count > 0) {
            action(TransferToInternal)->setEnabled(true);
            menu.addAction(action(TransferToInternal));
        }
    }
    if (isWritable && facts.count > 0) {
        action(DeleteFromContext)->setText(deleteText(facts));
        menu.addAction(action(DeleteFromContext));
    }
    if (facts.count > 0 && !facts.hasMissing && !facts.hasHyperlink) {
        action(ExtractFromContext)->setText(tr("Extract Files"));
        menu.addAction(action(ExtractFromContext));
    }
    if (facts.count > 0 && !facts.hasMissing)
        menu.addAction(action(ExportMenuEntry));
    if (isOne) {
        menu.addAction(action(ShowRelated));
        menu.addAction(action(Properties));
    }
}
