#include "ui/views/fileviews.h"

#include "core/records/file.h"
#include "models/base/modelroles.h"
#include "models/contents/contentsmodel.h"
#include "models/contents/sorter.h"
#include "ui/views/columnmenu.h"
#include "ui/views/filetableheader.h"
#include "ui/views/listview.h"
#include "ui/views/shownpictures.h"
#include "ui/widgets/delegate.h"
#include "ui/widgets/tableview.h"

#include <QHeaderView>
#include <QMimeData>

namespace {

constexpr int tablePictureSide = 40;
constexpr int tableRowHeight = 48;

// A view makes a selection model with each model and leaves the one before to us.
void giveModel(QAbstractItemView *view, QAbstractItemModel *model)
{
    QItemSelectionModel *before = view->selectionModel();
    view->setModel(model);
    delete before;
}

} // namespace

FileViews::FileViews(QWidget *parent)
    : QStackedWidget(parent),
      m_list(new ListView(this)),
      m_table(new TableView(this)),
      m_header(std::make_unique<FileTableHeader>(m_table)),
      m_columnMenu(new ColumnMenu(m_table->horizontalHeader(), ContentsModel::NameColumn, this))
{
    m_list->setObjectName(QStringLiteral("ListView"));
    m_table->setObjectName(QStringLiteral("TableView"));
    m_list->setAccessibleName(tr("Files as thumbnails"));
    m_table->setAccessibleName(tr("Files as a table"));
    const auto nameAt = [this](int row) { return m_sorter->fileAt(row)->name(); };
    m_list->setNames(nameAt);
    m_table->setNames(nameAt);
    const auto dragDataOf = [this](const QItemSelection &ranges) {
        return m_sorter ? m_sorter->dragData(ranges) : nullptr;
    };
    m_list->setDragData(dragDataOf);
    m_table->setDragData(dragDataOf);
    connect(new ShownPictures(m_list, m_table, this), &ShownPictures::aboutToShow, this,
            &FileViews::aboutToShow);
    setUpTable();
    auto *delegate = new Delegate(this);
    delegate->setPictureColumn(ContentsModel::ThumbnailColumn);
    delegate->setSizeColumn(ContentsModel::SizeColumn);
    delegate->setNameRole(ContentsRoles::Name);
    delegate->setIdRole(ContentsRoles::FileId);
    delegate->setHits([this](const QModelIndex &index) { return searchHit(index); });
    for (QAbstractItemView *view : all()) {
        view->setItemDelegate(delegate);
        setUpView(view);
    }
}

FileViews::~FileViews() = default;

void FileViews::setUpTable()
{
    m_table->setIconSize({tablePictureSide, tablePictureSide});
    m_table->verticalHeader()->setDefaultSectionSize(tableRowHeight);
    m_table->setAlternatingRowColors(true);
    m_table->horizontalHeader()->setSectionsMovable(true);
    connect(m_table->horizontalHeader(), &QHeaderView::sortIndicatorChanged, this,
            &FileViews::sortingChanged);
}

void FileViews::setUpView(QAbstractItemView *view)
{
    addWidget(view);
    view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    view->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(view, &QWidget::customContextMenuRequested, this, &FileViews::contextMenuRequested);
    connect(view, &QAbstractItemView::doubleClicked, this, &FileViews::doubleClicked);
}

QString FileViews::searchHit(const QModelIndex &index) const
{
    const QString hit = m_sorter ? m_sorter->filterText() : QString();
    // What a view has not laid out anew yet may name a row that is gone.
    const File *record = hit.isEmpty() ? nullptr : m_sorter->fileAt(index.row());
    if (!record)
        return {};
    const File &file = *record;
    QString whole;
    switch (index.column()) {
    case ContentsModel::ThumbnailColumn:
    case ContentsModel::NameColumn:
        whole = file.name();
        break;
    case ContentsModel::DescriptionColumn:
        whole = file.description();
        break;
    case ContentsModel::IdCodeColumn:
        whole = file.idCode();
        break;
    }
    return whole.contains(hit, Qt::CaseInsensitive) ? hit : QString();
}

void FileViews::showThumbnails(bool on)
{
    setCurrentWidget(on ? static_cast<QWidget *>(m_list) : m_table);
}

void FileViews::setThumbnailSide(int side)
{
    m_list->setThumbnailSide(side);
}

QAbstractItemView *FileViews::current() const
{
    return static_cast<QAbstractItemView *>(currentWidget());
}

QList<QAbstractItemView *> FileViews::all() const
{
    return {m_list, m_table};
}

void FileViews::setSorter(Sorter *sorter)
{
    if (m_sorter)
        detach();
    m_sorter = sorter;
    if (m_sorter)
        attach();
}

void FileViews::attach()
{
    m_table->setSortingEnabled(false);
    giveModel(m_list, m_sorter);
    giveModel(m_table, m_sorter);
    QItemSelectionModel *ofTable = m_table->selectionModel();
    m_table->setSelectionModel(m_list->selectionModel());
    delete ofTable;
    // Sorts by what the header brings back, which is cheap: no file is shown yet.
    m_header->restore();
    m_table->setSortingEnabled(true);
}

void FileViews::detach()
{
    m_header->save();
    QItemSelectionModel *shared = selection();
    // The table must not lose the shared selection model while it still shows the model.
    m_table->setModel(nullptr);
    m_list->setModel(nullptr);
    delete shared;
}

QItemSelectionModel *FileViews::selection() const
{
    return m_list->selectionModel();
}

int FileViews::sortColumn() const
{
    return m_sorter ? m_sorter->sortColumn() : -1;
}

Qt::SortOrder FileViews::sortOrder() const
{
    return m_sorter ? m_sorter->sortOrder() : Qt::AscendingOrder;
}

void FileViews::sortBy(int column, Qt::SortOrder order)
{
    m_table->sortByColumn(column, order);
}

QMenu *FileViews::columnMenu() const
{
    return m_columnMenu;
}

void FileViews::setEditable(bool isEditable)
{
    for (QAbstractItemView *view : all()) {
        view->setEditTriggers(isEditable ? view->editTriggers() | QAbstractItemView::DoubleClicked |
                                               QAbstractItemView::EditKeyPressed
                                         : QAbstractItemView::NoEditTriggers);
    }
}

bool FileViews::isEditing() const
{
    return m_list->isEditing() || m_table->isEditing();
}

void FileViews::setEmptyText(const QString &text)
{
    m_list->setEmptyText(text);
    m_table->setEmptyText(text);
}

void FileViews::scrollToTop()
{
    m_list->scrollToTop();
    m_table->scrollToTop();
}
