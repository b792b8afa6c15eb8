#include "ui/views/externalfileview.h"

#include "models/externalfilemodel.h"

#include <QHeaderView>
#include <QScrollBar>
#include <QTimer>

namespace {
constexpr int nameWidth = 320;
constexpr int sizeWidth = 100;
constexpr int iconSide = 16;
} // namespace

ExternalFileView::ExternalFileView(QWidget *parent) : QTreeView(parent)
{
    setObjectName(QStringLiteral("ExternalFileView"));
    setAccessibleName(tr("External Files"));
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setDragEnabled(true);
    setDragDropMode(QAbstractItemView::DragOnly);
    setUniformRowHeights(true);
    setIconSize({iconSide, iconSide});
    setTextElideMode(Qt::ElideMiddle);
}

void ExternalFileView::paintEvent(QPaintEvent *event)
{
    QTreeView::paintEvent(event);
    // The window comes first, then what it takes to read folders.
    if (!m_model)
        QTimer::singleShot(0, this, &ExternalFileView::load);
}

void ExternalFileView::load()
{
    if (m_model)
        return;
    m_model = new ExternalFileModel(this);
    // The root path is what is watched and read; "/" shows all there is.
    m_model->setRootPath(QDir::rootPath());
    setModel(m_model);
    setSortingEnabled(true);
    sortByColumn(ExternalFileModel::NameColumn, Qt::AscendingOrder);
    hideColumn(ExternalFileModel::TypeColumn);
    header()->resizeSection(ExternalFileModel::NameColumn, nameWidth);
    header()->resizeSection(ExternalFileModel::SizeColumn, sizeWidth);
    openHome();
}

void ExternalFileView::openHome()
{
    m_home = m_model->index(QDir::homePath());
    // Current, so that the keys start from it, but not selected.
    selectionModel()->setCurrentIndex(m_home, QItemSelectionModel::NoUpdate);
    setExpanded(m_home, true);
    scrollTo(m_home, PositionAtTop);

    m_settling = new QTimer(this);
    m_settling->setSingleShot(true);
    connect(m_settling, &QTimer::timeout, this, [this] { scrollTo(m_home, PositionAtTop); });
    const auto settle = [this] { m_settling->start(); };
    connect(m_model, &QAbstractItemModel::rowsInserted, m_settling, settle);
    connect(m_model, &QAbstractItemModel::rowsRemoved, m_settling, settle);
    connect(m_model, &QAbstractItemModel::layoutChanged, m_settling, settle);
    connect(verticalScrollBar(), &QScrollBar::actionTriggered, this, &ExternalFileView::leaveHome);
}

void ExternalFileView::leaveHome()
{
    delete m_settling;
}

void ExternalFileView::mousePressEvent(QMouseEvent *event)
{
    leaveHome();
    QTreeView::mousePressEvent(event);
}

void ExternalFileView::keyPressEvent(QKeyEvent *event)
{
    leaveHome();
    QTreeView::keyPressEvent(event);
}
