#include "bench/openwindow.h"

#include "app/messages/messages.h"
#include "core/controllers/browstreecontroller.h"
#include "core/controllers/collection.h"
#include "core/controllers/mainviewcontroller.h"
#include "db/manager/databasemanger.h"
#include "models/contents/contentsmodel.h"
#include "models/contents/sorter.h"
#include "models/trees/brtreesortermodel.h"
#include "ui/docks/tagstabledock.h"
#include "ui/views/listview.h"
#include "ui/views/mainfilesview.h"
#include "ui/views/taggroupbar.h"
#include "ui/views/tbtreeview.h"
#include "ui/widgets/tableview.h"

#include <QFile>
#include <QHeaderView>
#include <QLineEdit>
#include <QTemporaryDir>

OpenWindow::OpenWindow(const QString &library, const QTemporaryDir &folder)
    : m_plainPath(folder.filePath(QStringLiteral("plain.vrn")))
{
    const QString path = folder.filePath(QStringLiteral("window.vrn"));
    QFile::copy(library, path);
    QFile::copy(library, m_plainPath);
    m_window.resize(1200, 800);
    m_window.show();
    bool isOpen = false;
    m_opening = Settling::run(
        [&] {
            isOpen = m_window.openDatabase(DBDetails::local(path));
            if (!isOpen)
                qFatal("%s cannot be opened", qPrintable(path));
        },
        [&isOpen] { return !isOpen; });
    Collection *collection = m_window.collection();
    files = collection->mainViewController();
    tags = collection->tagsController();
    groups = collection->groupsController();
    tree = collection->browsTreeController();
    manager = collection->findChild<DatabaseManger *>();
    mainView = m_window.findChild<MainFilesView *>();
    table = mainView->findChild<TableView *>();
    list = mainView->findChild<ListView *>();
    tagsDock = m_window.findChild<TagsTableDock *>();
    tagTable = tagsDock->findChild<TableView *>();
    tagTabs = tagsDock->findChild<TagGroupBar *>();
    nodes = m_window.findChild<TBtreeView *>();
    Messages::setResponder([](const Messages::Box &) { return Messages::Answer{QMessageBox::Ok, -1}; });
}

QLineEdit *OpenWindow::edit(const char *bar)
{
    auto *tools = m_window.findChild<QWidget *>(QLatin1String(bar));
    return tools ? tools->findChild<QLineEdit *>() : nullptr;
}

Settling::Cost OpenWindow::measure(const std::function<void()> &action)
{
    return Settling::run(action, [this] { return manager->isBusy(); });
}

Settling::Cost OpenWindow::reload()
{
    bool isDone = false;
    QObject::connect(manager, &DatabaseManger::allDataReloaded, &m_window, [&isDone] { isDone = true; });
    const Settling::Cost cost =
        Settling::run([this] { manager->reloadAllData(); }, [&isDone] { return !isDone; });
    QObject::disconnect(manager, &DatabaseManger::allDataReloaded, &m_window, nullptr);
    return cost;
}

Settling::Cost OpenWindow::close()
{
    return Settling::run([this] { m_window.slotDisconnectDb(); }, [] { return false; });
}

QModelIndex OpenWindow::node(qint64 id)
{
    return tree->sorterModel()->indexOfNode(TagNode, id);
}

void OpenWindow::clickNode(const QModelIndex &node)
{
    nodes->setCurrentIndex(node);
    nodes->activatedNode(node);
}

void OpenWindow::showNothing()
{
    files->showSpecialNode(AllFilesWithoutTags);
}

void OpenWindow::showAll()
{
    files->showSpecialNode(AllFiles);
}

void OpenWindow::sort(int column, Qt::SortOrder order)
{
    table->sortByColumn(column, order);
}

void OpenWindow::unsort()
{
    table->horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder);
    files->sorter()->sort(-1);
}

void OpenWindow::select(int first, int count)
{
    const QAbstractItemModel *model = table->model();
    const QItemSelection rows(model->index(first, 0), model->index(first + count - 1, 0));
    table->selectionModel()->select(rows, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
}

QVector<qint64> OpenWindow::idsOfRows(int first, int count) const
{
    QVector<qint64> ids;
    for (int row = first; row < first + count; ++row)
        ids.append(files->contentsModel()->fileIndex().idAt(row));
    return ids;
}

void OpenWindow::runPlain(const QString &statement)
{
    if (!m_plain)
        m_plain = std::make_unique<PlainDatabase>(QFile::encodeName(m_plainPath).constData());
    m_plain->run(statement.toUtf8().constData());
}
