#include "ui/dialogs/taggroupingdialog.h"

#include "app/settings/windowsettings.h"
#include "core/controllers/groupscontroller.h"
#include "models/tags/taggroupmodel.h"
#include "models/tags/tagroles.h"
#include "ui/dialogs/nameinput.h"
#include "ui/dialogs/tabledialoglayout.h"
#include "ui/widgets/delegate.h"
#include "ui/widgets/firstsize.h"
#include "ui/widgets/tableview.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QPushButton>
#include <QShortcut>

namespace {
const QString geometryKey = QStringLiteral("TagGroupingDialog/geometry");
constexpr QSize usualSize(420, 380);
constexpr int rowPadding = 8;
} // namespace

TagGroupingDialog::TagGroupingDialog(GroupsController *controller, QWidget *parent)
    : QDialog(parent),
      m_controller(controller),
      m_view(new TableView(this)),
      m_succession(new QCheckBox(tr("Several in &succession"), this)),
      m_delete(new QPushButton(QIcon(QStringLiteral(":/icons/delete.png")), tr("&Delete"), this))
{
    setObjectName(QStringLiteral("TagGroupingDialog"));
    setWindowTitle(tr("Edit Tag Groups"));
    buildTable();

    layOutTableDialog(this, tr("Groups arrange tags; a checked group is a tab below the table of tags."),
                      m_view, makeButtons());
    updateButtons();
    if (!restoreGeometry(WindowSettings::layout(geometryKey)))
        FirstSize::byFont(this, usualSize);
}

void TagGroupingDialog::buildTable()
{
    m_view->setObjectName(QStringLiteral("groupsTable"));
    m_view->setAccessibleName(tr("Tag Groups"));
    m_view->setEmptyText(tr("No tag groups yet"));
    m_view->setDragDropMode(QAbstractItemView::NoDragDrop);
    m_view->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed);
    auto *delegate = new Delegate(m_view);
    delegate->setIdRole(GroupRoles::GroupId);
    m_view->setItemDelegate(delegate);
    m_view->setModel(m_controller->model());
    m_view->verticalHeader()->setDefaultSectionSize(m_view->fontMetrics().height() + rowPadding);
    QHeaderView *header = m_view->horizontalHeader();
    header->setStretchLastSection(false);
    header->setSectionResizeMode(TagGroupModel::GroupColumn, QHeaderView::Stretch);
    header->setSectionResizeMode(TagGroupModel::TabColumn, QHeaderView::ResizeToContents);
    m_view->setCurrentIndex(m_view->model()->index(0, TagGroupModel::GroupColumn));

    connect(m_view, &TableView::keyPressed, this, &TagGroupingDialog::toggleTab);
    connect(m_view->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &TagGroupingDialog::updateButtons);
    connect(m_view->model(), &QAbstractItemModel::modelReset, this, &TagGroupingDialog::updateButtons);
    auto *shortcut = new QShortcut(QKeySequence::Delete, m_view);
    shortcut->setContext(Qt::WidgetWithChildrenShortcut);
    connect(shortcut, &QShortcut::activated, this, &TagGroupingDialog::deleteSelected);
}

QLayout *TagGroupingDialog::makeButtons()
{
    auto *add = new QPushButton(QIcon(QStringLiteral(":/icons/add.png")), tr("&New"), this);
    add->setToolTip(tr("Make a new tag group"));
    connect(add, &QPushButton::clicked, this, &TagGroupingDialog::addGroups);
    m_succession->setToolTip(tr("After each new group ask for the next one, until that is cancelled"));
    m_delete->setToolTip(tr("Delete the selected groups; their tags stay (%1)")
                             .arg(QKeySequence(QKeySequence::Delete).toString(QKeySequence::NativeText)));
    connect(m_delete, &QPushButton::clicked, this, &TagGroupingDialog::deleteSelected);
    for (QPushButton *button : {add, m_delete})
        button->setAutoDefault(false); // Return in the table renames nothing and must not press one

    auto *row = new QHBoxLayout;
    row->addWidget(add);
    row->addWidget(m_succession);
    row->addStretch();
    row->addWidget(m_delete);
    return row;
}

void TagGroupingDialog::addGroups()
{
    const auto add = [this](const QString &name) {
        const qint64 groupId = m_controller ? m_controller->addGroup(name, true) : 0;
        select(groupId);
        return groupId > 0 || !m_controller;
    };
    do {
        if (!NameInput::askForGroup(this, add))
            return;
    } while (m_succession->isChecked());
}

void TagGroupingDialog::select(qint64 groupId)
{
    const QAbstractItemModel *model = m_view->model();
    for (int row = 0; row < model->rowCount(); ++row) {
        const QModelIndex index = model->index(row, TagGroupModel::GroupColumn);
        if (index.data(GroupRoles::GroupId).toLongLong() == groupId)
            m_view->setCurrentIndex(index);
    }
}

void TagGroupingDialog::deleteSelected()
{
    QVector<qint64> groupIds;
    const QModelIndexList rows = m_view->selectionModel()->selectedRows();
    for (const QModelIndex &index : rows)
        groupIds.append(index.data(GroupRoles::GroupId).toLongLong());
    if (!m_controller || groupIds.isEmpty())
        return;
    m_controller->removeGroups(groupIds);
    // The view moves on to a neighbour without selecting it.
    m_view->setCurrentIndex(m_view->currentIndex());
}

/** Space works the box of the current row, whichever column is current. */
void TagGroupingDialog::toggleTab(QKeyEvent *event)
{
    const QModelIndex current = m_view->currentIndex();
    if (event->key() != Qt::Key_Space || event->modifiers() != Qt::NoModifier || !current.isValid())
        return;
    const QModelIndex tab = current.siblingAtColumn(TagGroupModel::TabColumn);
    const bool isChecked = tab.data(Qt::CheckStateRole).toInt() == Qt::Checked;
    m_view->model()->setData(tab, isChecked ? Qt::Unchecked : Qt::Checked, Qt::CheckStateRole);
    event->accept();
}

void TagGroupingDialog::updateButtons()
{
    m_delete->setEnabled(m_view->selectionModel()->hasSelection());
}

void TagGroupingDialog::done(int result)
{
    WindowSettings::setLayout(geometryKey, saveGeometry());
    QDialog::done(result);
}
