#include "ui/dialogs/taggroupform.h"

#include "app/settings/showntext.h"
#include "app/settings/windowsettings.h"
#include "core/controllers/groupscontroller.h"
#include "models/tags/tagroles.h"
#include "ui/widgets/firstsize.h"
#include "ui/widgets/tableview.h"

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLabel>
#include <QSet>
#include <QStandardItemModel>
#include <QVBoxLayout>

#include <algorithm>

namespace {
const QString geometryKey = QStringLiteral("TagGroupForm/geometry");
const QString headerKey = QStringLiteral("TagGroupView/header");
constexpr QSize usualSize(360, 340);
constexpr int rowPadding = 8;
constexpr int earlierStateRole = GroupRoles::GroupId + 1;

Qt::CheckState membership(const GroupItem &group, const QVector<qint64> &tagIds)
{
    const QSet<qint64> members(group.tags().begin(), group.tags().end());
    const auto count = std::count_if(tagIds.begin(), tagIds.end(),
                                     [&members](qint64 tagId) { return members.contains(tagId); });
    if (count == 0)
        return Qt::Unchecked;
    return count == tagIds.size() ? Qt::Checked : Qt::PartiallyChecked;
}

QVector<qint64> changedTags(const GroupItem &group, const QVector<qint64> &tagIds, bool isMember)
{
    QVector<qint64> tags = group.tags();
    const QSet<qint64> changed(tagIds.begin(), tagIds.end());
    tags.erase(std::remove_if(tags.begin(), tags.end(),
                              [&changed](qint64 tagId) { return changed.contains(tagId); }),
               tags.end());
    return isMember ? tags + tagIds : tags;
}
} // namespace

TagGroupForm::TagGroupForm(GroupsController *controller, const QVector<qint64> &tagIds, QWidget *parent)
    : QDialog(parent),
      m_controller(controller),
      m_tagIds(tagIds),
      m_model(new QStandardItemModel(this)),
      m_view(new TableView(this))
{
    setObjectName(QStringLiteral("TagGroupForm"));
    setWindowTitle(tr("Assign Tag Groups"));
    fillGroups();
    buildTable();
    const QString one = tr("Check the groups that the selected tag belongs to.");
    const QString many = tr("Check the groups that the selected tags belong to. Half checked are those that "
                            "hold some of them.");
    auto *hint = new QLabel(m_tagIds.size() == 1 ? one : many, this);
    hint->setWordWrap(true);

    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(hint);
    layout->addWidget(m_view);
    layout->addWidget(buttons);
    if (!restoreGeometry(WindowSettings::layout(geometryKey)))
        FirstSize::byFont(this, usualSize);
}

void TagGroupForm::buildTable()
{
    m_view->setObjectName(QStringLiteral("groupsTable"));
    m_view->setAccessibleName(tr("Tag Groups"));
    m_view->setEmptyText(tr("No tag groups yet"));
    m_view->setModel(m_model);
    m_view->setDragDropMode(QAbstractItemView::NoDragDrop);
    m_view->setSelectionMode(QAbstractItemView::SingleSelection);
    m_view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_view->verticalHeader()->setDefaultSectionSize(m_view->fontMetrics().height() + rowPadding);
    m_view->horizontalHeader()->restoreState(WindowSettings::layout(headerKey));
    m_view->horizontalHeader()->setStretchLastSection(true);
    m_view->setCurrentIndex(m_model->index(0, 0)); // for Space, which works the box
}

void TagGroupForm::fillGroups()
{
    m_model->setHorizontalHeaderLabels({tr("Group")});
    if (!m_controller || !m_controller->groups())
        return;
    for (const GroupItem *group : qAsConst(*m_controller->groups())) {
        const Qt::CheckState state = membership(*group, m_tagIds);
        auto *item = new QStandardItem(ShownText::cut(group->name()));
        item->setCheckable(true);
        item->setCheckState(state);
        item->setData(group->id(), GroupRoles::GroupId);
        item->setData(int(state), earlierStateRole);
        m_model->appendRow(item);
    }
}

void TagGroupForm::accept()
{
    // What a busy database refuses may go through at a second try, so the boxes stay as they are.
    if (assign())
        QDialog::accept();
}

bool TagGroupForm::assign()
{
    QMap<qint64, QVector<qint64>> tagsOfGroups;
    for (int row = 0; m_controller && row < m_model->rowCount(); ++row) {
        const QStandardItem *item = m_model->item(row);
        if (item->checkState() == item->data(earlierStateRole).toInt())
            continue;
        // Looked up anew: a group may have gone while the dialog was open.
        const qint64 groupId = item->data(GroupRoles::GroupId).toLongLong();
        const GroupItem *group = m_controller->groups()->value(groupId);
        if (group)
            tagsOfGroups.insert(groupId, changedTags(*group, m_tagIds, item->checkState() == Qt::Checked));
    }
    return !m_controller || m_controller->setGroupTags(tagsOfGroups);
}

void TagGroupForm::done(int result)
{
    WindowSettings::setLayout(geometryKey, saveGeometry());
    WindowSettings::setLayout(headerKey, m_view->horizontalHeader()->saveState());
    QDialog::done(result);
}
