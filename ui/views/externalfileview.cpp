#include "ui/views/externalfileview.h"

#include "app/settings/constants.h"
#include "fileops/looks/silentplaces.h"
#include "models/base/idlistmime.h"
#include "models/trees/externalfilemodel.h"
#include "ui/widgets/dragpicture.h"
#include "ui/widgets/fontscale.h"
#include "ui/widgets/hoveropener.h"
#include "ui/widgets/selectedrows.h"

#include <QDrag>
#include <QDragMoveEvent>
#include <QFileInfo>
#include <QHeaderView>
#include <QMimeData>
#include <QPainter>
#include <QScrollBar>
#include <QTimer>

namespace {
constexpr int nameWidth = 320;
constexpr int sizeWidth = 100;
constexpr int iconSide = 16;
} // namespace

ExternalFileView::ExternalFileView(QWidget *parent) : QTreeView(parent), m_hoverOpener(new HoverOpener(this))
{
    setObjectName(QStringLiteral("ExternalFileView"));
    setAccessibleName(tr("External Files"));
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setDragEnabled(true);
    setDragDropMode(QAbstractItemView::DragDrop);
    setDropIndicatorShown(false); // which knows what the model takes, and that is nothing
    setUniformRowHeights(true);
    setIconSize({iconSide, iconSide});
    setTextElideMode(Qt::ElideMiddle);
}

ExternalFileView::~ExternalFileView()
{
    // The model waits for its thread, which waits for that disk: it is left behind then.
    if (!m_model || !SilentPlaces::isAnyDiskSilent())
        return;
    setModel(nullptr);
    m_model->setParent(nullptr);
}

void ExternalFileView::paintEvent(QPaintEvent *event)
{
    QTreeView::paintEvent(event);
    if (m_dropFolder.isValid()) {
        QRect row = visualRect(m_dropFolder);
        row.setRight(viewport()->width() - 1);
        QPainter painter(viewport());
        painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
        painter.drawRect(row.adjusted(1, 1, -1, -1));
    }
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
    header()->resizeSection(ExternalFileModel::NameColumn, FontScale::byFont(nameWidth, this));
    header()->resizeSection(ExternalFileModel::SizeColumn, FontScale::byFont(sizeWidth, this));
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

QModelIndex ExternalFileView::folderAt(const QPoint &pos) const
{
    const QModelIndex index = indexAt(pos).siblingAtColumn(ExternalFileModel::NameColumn);
    if (!index.isValid() || !m_model->isDir(index))
        return {};
    return QFileInfo(m_model->filePath(index)).isWritable() ? index : QModelIndex();
}

// With the base class's picture, of whole rows, nobody would see where the files are dropped.
void ExternalFileView::startDrag(Qt::DropActions supportedActions)
{
    if (!m_model || !selectionModel()->hasSelection())
        return;
    auto *drag = new QDrag(this);
    drag->setMimeData(m_model->mimeData(selectedRowIndexes(selectionModel())));
    setDragPicture(drag, this);
    drag->exec(supportedActions, Qt::CopyAction);
}

void ExternalFileView::dragEnterEvent(QDragEnterEvent *event)
{
    leaveHome();
    event->setDropAction(Qt::CopyAction);
    event->setAccepted(m_model && event->mimeData()->hasFormat(Constants::fileMimeType));
}

void ExternalFileView::dragMoveEvent(QDragMoveEvent *event)
{
    QTreeView::dragMoveEvent(event); // scrolls at the edges
    if (!m_model || !event->mimeData()->hasFormat(Constants::fileMimeType)) {
        event->ignore();
        return;
    }
    m_hoverOpener->hover(indexAt(event->pos()).siblingAtColumn(ExternalFileModel::NameColumn));
    m_dropFolder = folderAt(event->pos());
    viewport()->update();
    event->setDropAction(Qt::CopyAction);
    event->setAccepted(m_dropFolder.isValid());
}

void ExternalFileView::dragLeaveEvent(QDragLeaveEvent *event)
{
    endDrag();
    QTreeView::dragLeaveEvent(event);
}

void ExternalFileView::dropEvent(QDropEvent *event)
{
    const QModelIndex folder = m_model ? folderAt(event->pos()) : QModelIndex();
    const QVector<qint64> fileIds = IdListMime::unpack(event->mimeData(), Constants::fileMimeType);
    endDrag();
    stopAutoScroll();
    setState(NoState);
    event->setDropAction(Qt::CopyAction);
    event->setAccepted(folder.isValid() && !fileIds.isEmpty());
    if (event->isAccepted())
        emit filesDropped(m_model->filePath(folder), fileIds);
}

void ExternalFileView::endDrag()
{
    m_hoverOpener->stop();
    m_dropFolder = QModelIndex();
    viewport()->update();
}
