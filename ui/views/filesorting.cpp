#include "ui/views/filesorting.h"

#include "core/controllers/collection.h"
#include "core/controllers/collectionsettings.h"
#include "core/controllers/mainviewcontroller.h"
#include "models/contents/contentsmodel.h"
#include "models/contents/sorter.h"
#include "ui/views/fileviews.h"
#include "ui/widgets/mainui.h"

#include <QActionGroup>
#include <QMenu>

namespace {

constexpr int asAdded = -1;
// More than these take a moment to be sorted, which nobody has asked for.
constexpr int mostSortedUnasked = 100000;

} // namespace

FileSorting::FileSorting(FileViews *views, QObject *parent) : QObject(parent), m_views(views)
{
    connect(m_views, &FileViews::sortingChanged, this, &FileSorting::remember);
}

void FileSorting::takePlace(MainUi &ui)
{
    ui.viewMenu->addSeparator();
    m_menu = ui.viewMenu->addMenu(tr("Sort By"));
    m_menu->setObjectName(QStringLiteral("sortMenu"));
    auto *columns = new QActionGroup(m_menu);
    const auto addColumn = [this, columns](const QString &text, int column) {
        QAction *action = columns->addAction(m_menu->addAction(text));
        action->setCheckable(true);
        action->setData(column);
        connect(action, &QAction::triggered, this,
                [this, column] { m_views->sortBy(column, m_views->sortOrder()); });
        m_columns.append(action);
    };
    for (int column = ContentsModel::NameColumn; column < ContentsModel::columnTotal; ++column)
        addColumn(ContentsModel::columnTitle(column), column);
    addColumn(tr("As Added"), asAdded);
    m_menu->addSeparator();
    auto *directions = new QActionGroup(m_menu);
    const auto addDirection = [this, directions](const QString &text, Qt::SortOrder order) {
        QAction *action = directions->addAction(m_menu->addAction(text));
        action->setCheckable(true);
        connect(action, &QAction::triggered, this,
                [this, order] { m_views->sortBy(m_views->sortColumn(), order); });
        return action;
    };
    m_ascending = addDirection(tr("Ascending"), Qt::AscendingOrder);
    m_descending = addDirection(tr("Descending"), Qt::DescendingOrder);
    connect(m_menu, &QMenu::aboutToShow, this, &FileSorting::showState);
}

void FileSorting::showState()
{
    // The picture stands for the name.
    const int column = m_views->sortColumn() == ContentsModel::ThumbnailColumn ? 1 : m_views->sortColumn();
    for (QAction *action : qAsConst(m_columns))
        action->setChecked(action->data().toInt() == column);
    (m_views->sortOrder() == Qt::AscendingOrder ? m_ascending : m_descending)->setChecked(true);
    for (QAction *direction : {m_ascending, m_descending})
        direction->setEnabled(column != asAdded);
}

void FileSorting::setController(MainViewController *controller)
{
    // What the files are sorted by on their way in is nobody's choice.
    m_settings = nullptr;
    if (m_menu)
        m_menu->setEnabled(controller);
    if (!controller)
        return;
    CollectionSettings *settings = controller->collection()->settings();
    if (const auto stored = settings->fileOrder())
        m_views->sortBy(stored->column, stored->order);
    else if (m_views->sortColumn() < 0 && controller->sorter()->rowCount() <= mostSortedUnasked)
        m_views->sortBy(ContentsModel::NameColumn, Qt::AscendingOrder);
    m_settings = settings;
}

void FileSorting::remember(int column, Qt::SortOrder order)
{
    if (m_settings)
        m_settings->setFileOrder({column, order});
}
