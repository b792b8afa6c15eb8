#include "ui/docks/tagstabledock.h"

#include "app/settings/windowsettings.h"
#include "core/controllers/collection.h"
#include "core/controllers/groupscontroller.h"
#include "core/controllers/mainviewcontroller.h"
#include "core/controllers/narrowing.h"
#include "core/controllers/tagscontroller.h"
#include "models/counts/tagcounts.h"
#include "models/tags/tagroles.h"
#include "models/tags/tagsgroupproxy.h"
#include "models/tags/tagstablemodel.h"
#include "ui/docks/tagcolumns.h"
#include "ui/docks/tagdockactions.h"
#include "ui/docks/taggrouptabs.h"
#include "ui/docks/tagselection.h"
#include "ui/tagging/favouritemenu.h"
#include "ui/views/exportmenu.h"
#include "ui/views/taggroupbar.h"
#include "ui/widgets/countdelegate.h"
#include "ui/widgets/fontscale.h"
#include "ui/widgets/greenground.h"
#include "ui/widgets/mainui.h"
#include "ui/widgets/tableview.h"

#include <QAction>
#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QSortFilterProxyModel>
#include <QToolBar>
#include <QVBoxLayout>

namespace {
constexpr int filterEditWidth = 53;
constexpr int markSide = 16;
constexpr int rowPadding = 6;

QString newTagKey()
{
    return QKeySequence(QKeySequence::New).toString(QKeySequence::NativeText);
}
} // namespace

TagsTableDock::TagsTableDock(QWidget *parent)
    : AbstractDock(tr("Tags"), parent), m_actions(new TagDockActions(this))
{
    setObjectName(QStringLiteral("TagsTableDock"));
    buildForm();
    connectActions();
    updateActionsAvailability();
}

TagsTableDock::~TagsTableDock()
{
    // A dock that never got its places has never read the setting either.
    if (m_actions->action(TagDockActions::EditMode))
        WindowSettings::setEditModeActivated(m_isEditMode);
    setGroupsController(nullptr);
    setTagsController(nullptr);
}

void TagsTableDock::buildForm()
{
    auto *form = new QWidget(this);
    m_table = new TableView(form);
    m_selection = std::make_unique<TagSelection>(m_table);
    m_columns = std::make_unique<TagColumns>(m_table);
    m_bar = new TagGroupBar(form);
    m_tabs = new TagGroupTabs(m_bar, this);
    m_commands = new TagDockCommands(m_selection.get(), m_table, m_bar, this);
    m_exports = new ExportMenu([this] { return m_commands->exportSelection(); }, this);
    m_exports->watch(m_table);
    auto *layout = new QVBoxLayout(form);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_table);
    layout->addWidget(m_bar);
    setWidget(form);
    buildTable();

    connect(m_bar, &QTabBar::currentChanged, this, &TagsTableDock::switchGroup, Qt::UniqueConnection);
    connect(m_bar, &QTabBar::currentChanged, this, &TagsTableDock::updateTabStyle, Qt::UniqueConnection);
    connect(qGuiApp, &QGuiApplication::paletteChanged, this, &TagsTableDock::updateGround);
    connect(m_bar, &QWidget::customContextMenuRequested, this, &TagsTableDock::execTabContextMenu);
    connect(m_bar, &TagGroupBar::tagsDropped, m_commands, &TagDockCommands::addTagsToGroup);
    connect(m_commands, &TagDockCommands::aboutToAddTags, this, &TagsTableDock::clearFilter);
}

void TagsTableDock::buildTable()
{
    m_table->setObjectName(QStringLiteral("tagsTable"));
    m_table->setAccessibleName(tr("Tags"));
    m_table->setItemDelegate(new CountDelegate(TagsTableModel::NameColumn, TagRoles::FileCount, m_table));
    m_table->setIconSize({markSide, markSide});
    m_table->setContextMenuPolicy(Qt::CustomContextMenu);
    m_table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->setSortingEnabled(true);
    m_table->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    m_table->verticalHeader()->setDefaultSectionSize(m_table->fontMetrics().height() + rowPadding);

    QHeaderView *header = m_table->horizontalHeader();
    header->setHighlightSections(false);
    header->setStretchLastSection(true);
    header->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(header, &QWidget::customContextMenuRequested, this, &TagsTableDock::execHeaderViewContextMenu);
    connect(m_table, &QWidget::customContextMenuRequested, this, &TagsTableDock::execViewContextMenu);
    // Not activated(): some styles send it for a single click, and a click only selects here.
    connect(m_table, &QAbstractItemView::doubleClicked, this, &TagsTableDock::slotTagOpened);
    connect(m_table, &TableView::keyPressed, this, &TagsTableDock::slotKeyPressed);
}

void TagsTableDock::connectActions()
{
    const auto onTriggered = [this](TagDockActions::Key key, void (TagsTableDock::*slot)()) {
        connect(m_actions->action(key), &QAction::triggered, this, slot);
    };
    onTriggered(TagDockActions::AssignGroups, &TagsTableDock::assignTagGroups);
    onTriggered(TagDockActions::AddTag, &TagsTableDock::slotAddNewTag);
    onTriggered(TagDockActions::DeleteTag, &TagsTableDock::slotDeleteTag);
    onTriggered(TagDockActions::RenameTag, &TagsTableDock::slotRenameTag);
    connect(m_actions->action(TagDockActions::MergeTags), &QAction::triggered, m_commands,
            &TagDockCommands::mergeTags);
    onTriggered(TagDockActions::AddGroup, &TagsTableDock::slotAddGroup);
    onTriggered(TagDockActions::DeleteGroup, &TagsTableDock::slotRemoveCurrentGroup);
    onTriggered(TagDockActions::NewTag, &TagsTableDock::slotAddNewTag);
    for (const TagDockActions::Key key : {TagDockActions::ExportTags, TagDockActions::ExportTagsFromContext})
        connect(m_actions->action(key), &QAction::triggered, this, &TagsTableDock::exportSeletedTags);
    onTriggered(TagDockActions::ActivateAnd, &TagsTableDock::slotActivateTagsAnd);
    onTriggered(TagDockActions::ActivateOr, &TagsTableDock::slotActivateTagsOr);
}

int TagsTableDock::tabsWidth() const
{
    return m_bar->standingTabsWidth();
}

void TagsTableDock::takePlaces(MainUi &ui)
{
    m_filterEdit = ui.tagFilterEdit;
    m_filterEdit->setMaximumWidth(FontScale::byFont(filterEditWidth, m_filterEdit));
    ui.tagFilterBar->addWidget(m_filterEdit);
    connect(m_filterEdit, &QLineEdit::textChanged, this, &TagsTableDock::slotFilterTags);

    m_actions->takePlaces(ui);
    m_exports->takePlace(ui);
    m_exports->putFirst(m_actions->action(TagDockActions::ExportTagsFromContext));
    connect(ui.editMode, &QAction::toggled, this, &TagsTableDock::slotEditModeChanged);
    ui.editMode->setChecked(WindowSettings::isEditModeActivated());
    updateActionsAvailability();
}

void TagsTableDock::setTagsController(TagsController *controller)
{
    if (m_tags == controller && (controller || !m_proxy))
        return;
    detachTags();
    m_tags = controller;
    m_commands->setTagsController(controller);
    m_exports->setController(controller ? controller->collection()->mainViewController() : nullptr);
    if (m_tags)
        attachTags();
    applyEditTriggers();
    updateEmptyText();
    updateActionsAvailability();
}

void TagsTableDock::detachTags()
{
    if (m_table->model())
        // The header loses its columns with the model.
        m_columns->save();
    if (m_tags) {
        const Collection *collection = m_tags->collection();
        disconnect(collection, &Collection::aboutToReloadAllData, this, &TagsTableDock::rememberTags);
        disconnect(collection, &Collection::allDataReloaded, this, &TagsTableDock::bringBackTags);
        disconnect(m_tags->counts(), nullptr, m_table->viewport(), nullptr);
    }
    m_proxy = nullptr;
    m_table->setModel(nullptr);
    clearFilter();
}

void TagsTableDock::clearFilter()
{
    if (m_filterEdit)
        m_filterEdit->clear();
}

void TagsTableDock::attachTags()
{
    m_proxy = m_tags->groupProxy();
    // Before the table sees the model, which would otherwise be filtered twice.
    m_proxy->setGroupId(m_bar->currentGroup());
    QSortFilterProxyModel *model = m_tags->filterProxy();
    m_table->setModel(model);
    m_columns->restore();
    connect(m_table->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &TagsTableDock::updateActionsAvailability);
    // Rows that a layout change or a reset takes away leave the selection without a word.
    connect(model, &QAbstractItemModel::layoutChanged, this, &TagsTableDock::updateActionsAvailability);
    connect(model, &QAbstractItemModel::modelReset, this, &TagsTableDock::updateActionsAvailability);
    connect(m_tags->collection(), &Collection::aboutToReloadAllData, this, &TagsTableDock::rememberTags);
    connect(m_tags->collection(), &Collection::allDataReloaded, this, &TagsTableDock::bringBackTags);
    // One painting of what shows, whichever of the numbers are others.
    connect(m_tags->counts(), &TagCounts::changed, m_table->viewport(), qOverload<>(&QWidget::update));
    slotFilterTags(m_filterEdit ? m_filterEdit->text() : QString());
}

/** What an empty table tells depends on why it is empty. */
void TagsTableDock::updateEmptyText()
{
    const qint64 tab = m_bar->currentGroup();
    if (!m_tags)
        m_table->setEmptyText({});
    else if (m_filterEdit && !m_filterEdit->text().isEmpty())
        m_table->setEmptyText(tr("No tag matches the filter."));
    else if (tab == TagsGroupProxy::DTagsTab)
        m_table->setEmptyText(tr(
            "Open a tag or the node of one: the tags that some, but not all, of its files have stand here."));
    else if (tab == TagsGroupProxy::AllTagsTab)
        m_table->setEmptyText(tr("No tags yet.\nMake one with %1.").arg(newTagKey()));
    else
        m_table->setEmptyText(tr("No tags in this group.\nDrop tags on its tab."));
}

void TagsTableDock::rememberTags()
{
    m_selection->remember();
}

void TagsTableDock::bringBackTags()
{
    m_selection->bringBack();
}

void TagsTableDock::updateActionsAvailability()
{
    const QVector<qint64> tagIds = m_selection->tagIds();
    TagDockActions::Situation situation;
    situation.areTagsWritable = m_tags && !m_tags->isReadOnly();
    situation.areGroupsWritable = m_groups && !m_groups->isReadOnly();
    situation.hasSelection = m_tags && !tagIds.isEmpty();
    situation.hasSeveral = m_tags && tagIds.size() > 1;
    situation.isLocal = m_exports->isLocal();
    m_actions->updateAvailability(situation);
    m_exports->updateAvailability(situation.hasSelection);
    if (QAction *link = m_actions->action(TagDockActions::LinkTags))
        // What the command links is read by the file views, which do not know this table.
        link->setData(QVariant::fromValue(tagIds));
    if (m_filterEdit)
        m_filterEdit->setEnabled(m_tags);
    m_table->setEnabled(m_tags);
}

void TagsTableDock::execHeaderViewContextMenu(const QPoint &pos)
{
    QMenu menu;
    QAction *alone = menu.addAction(tr("Hide all columns except Name"));
    alone->setCheckable(true);
    alone->setChecked(m_columns->isNameAlone());
    connect(alone, &QAction::toggled, this, [this](bool on) { m_columns->showNameAlone(on); });
    menu.exec(m_table->horizontalHeader()->mapToGlobal(pos));
}

void TagsTableDock::execViewContextMenu(const QPoint &pos)
{
    if (!m_tags)
        return;
    QMenu menu(tr("Tag Operations"));
    const int count = m_selection->tagIds().size();
    if (!m_tags->isReadOnly()) {
        menu.addAction(m_actions->action(TagDockActions::AddTag));
        if (count > 0) {
            menu.addAction(m_actions->action(TagDockActions::AssignGroups));
            menu.addAction(m_actions->action(TagDockActions::DeleteTag));
        }
        if (count == 1)
            menu.addAction(m_actions->action(TagDockActions::RenameTag));
        if (count > 1)
            menu.addAction(m_actions->action(TagDockActions::MergeTags));
    }
    menu.addMenu(m_exports->menu());
    if (count == 1 && !m_tags->isReadOnly())
        menu.addMenu(new FavouriteMenu(m_tags, m_selection->tagIds().first(), &menu));
    menu.exec(m_table->viewport()->mapToGlobal(pos));
}

void TagsTableDock::exportSeletedTags()
{
    m_commands->exportTags();
}

void TagsTableDock::slotTagOpened(const QModelIndex &index)
{
    const qint64 tagId = index.data(TagRoles::TagId).toLongLong();
    if (!m_tags || tagId <= 0)
        return;
    // A double click means the editor then; what is left to do here is to tell why none opens.
    if (m_isEditMode) {
        mayEdit(m_tags);
        return;
    }
    if (QGuiApplication::keyboardModifiers().testFlag(Qt::ControlModifier)) {
        narrowTo({tagId});
        return;
    }
    m_tags->showTagsEitherOr({tagId});
    emit anyOfTagsActivated({tagId});
}

void TagsTableDock::narrowTo(const QVector<qint64> &tagIds)
{
    if (!m_tags || tagIds.isEmpty())
        return;
    m_tags->collection()->mainViewController()->narrowing()->require(tagIds);
    emit allOfTagsActivated(tagIds);
}

void TagsTableDock::slotFilterTags(const QString &text)
{
    if (m_tags)
        m_tags->setTagFilter(text);
    updateEmptyText();
}

void TagsTableDock::slotKeyPressed(QKeyEvent *event)
{
    if (event->matches(QKeySequence::Delete)) {
        slotDeleteTag();
        event->accept();
        return;
    }
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (event->modifiers().testFlag(Qt::ControlModifier) && !m_isEditMode)
            narrowTo(m_selection->tagIds());
        event->accept();
        break;
    case Qt::Key_Tab:
        // With nothing to show the focus may move on.
        if (!m_isEditMode && !m_selection->tagIds().isEmpty()) {
            slotActivateTagsAnd();
            event->accept();
        }
        break;
    case Qt::Key_Equal:
        if (event->modifiers() == Qt::ControlModifier) {
            slotActivateTagsAnd();
            event->accept();
        }
        break;
    default:
        break;
    }
}

void TagsTableDock::slotActivateTagsOr()
{
    const QVector<qint64> tagIds = m_selection->tagIds();
    if (!m_tags || tagIds.isEmpty())
        return;
    clearActivation();
    m_tags->showTagsEitherOr(tagIds);
    emit anyOfTagsActivated(tagIds);
}

void TagsTableDock::slotActivateTagsAnd()
{
    const QVector<qint64> tagIds = m_selection->tagIds();
    if (!m_tags || tagIds.isEmpty())
        return;
    m_tags->showTagsSelected(tagIds);
    emit allOfTagsActivated(tagIds);
}

void TagsTableDock::clearActivation()
{
    if (m_tags)
        m_tags->clearMark();
}

void TagsTableDock::slotEditModeChanged(bool on)
{
    m_isEditMode = on;
    m_commands->setEditMode(on);
    applyEditTriggers();
    emit editModeChanged(on);
}

void TagsTableDock::applyEditTriggers()
{
    // In a read-only database an editor would only open to have its text refused.
    const bool isEditable = m_isEditMode && m_tags && !m_tags->isReadOnly();
    m_table->setEditTriggers(isEditable ? QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed
                                        : QAbstractItemView::NoEditTriggers);
}

void TagsTableDock::setGroupsController(GroupsController *controller)
{
    if (m_groups == controller && controller)
        return;
    if (const GroupMap *groups = m_groups ? m_groups->groups() : nullptr) {
        groups->disconnect(this);
        for (const GroupItem *group : qAsConst(*groups))
            // Groups outlive the dock's interest in them: they belong to the manager.
            group->disconnect(this);
    }
    m_groups = controller;
    m_commands->setGroupsController(controller);
    m_tabs->setController(controller);
    if (const GroupMap *groups = m_groups ? m_groups->groups() : nullptr) {
        connect(groups, &SignalContainer::itemInserted, this, &TagsTableDock::slotGroupCreated);
        connect(groups, &SignalContainer::itemDeleted, this,
                [this](const QVariant &groupId) { m_bar->removeGroupTab(groupId.toLongLong()); });
        for (const GroupItem *group : qAsConst(*groups))
            followGroup(group);
    }
    updateActionsAvailability();
}

void TagsTableDock::followGroup(const GroupItem *group)
{
    const qint64 id = group->id();
    connect(group, &GroupItem::groupVisibilityChanged, this,
            [this, id](bool visible) { slotGroupVisibilityChanged(id, visible); });
    connect(group, &GroupItem::groupNameChanged, this,
            [this, id](const QString &name) { slotGroupNameChanged(id, name); });
}

void TagsTableDock::slotGroupCreated(const QVariant &groupId)
{
    const GroupItem *group = m_groups ? m_groups->groups()->value(groupId.toLongLong()) : nullptr;
    if (!group)
        return;
    followGroup(group);
    slotGroupVisibilityChanged(group->id(), group->isVisible());
}

void TagsTableDock::slotGroupVisibilityChanged(qint64 groupId, bool visible)
{
    const GroupItem *group = m_groups ? m_groups->groups()->value(groupId) : nullptr;
    if (group && visible)
        m_bar->addGroupTab(groupId, group->name());
    else
        m_bar->removeGroupTab(groupId);
}

void TagsTableDock::slotGroupNameChanged(qint64 groupId, const QString &name)
{
    m_bar->renameGroupTab(groupId, name);
}

void TagsTableDock::switchGroup()
{
    if (m_proxy)
        m_proxy->setGroupId(m_bar->currentGroup());
    updateEmptyText();
}

void TagsTableDock::updateTabStyle()
{
    updateGround();
    clearFilter();
}

void TagsTableDock::updateGround()
{
    const bool isDTags = m_bar->currentGroup() == TagsGroupProxy::DTagsTab;
    setStyleSheet(isDTags ? GreenGround::styleSheet(QStringLiteral("QTableView")) : QString());
}

void TagsTableDock::execTabContextMenu(const QPoint &pos)
{
    QMenu menu;
    menu.addAction(m_actions->action(TagDockActions::AddGroup));
    if (m_bar->currentGroup() > 0)
        menu.addAction(m_actions->action(TagDockActions::DeleteGroup));
    menu.exec(m_bar->mapToGlobal(pos));
}
