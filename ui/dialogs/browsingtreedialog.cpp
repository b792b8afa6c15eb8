#include "ui/dialogs/browsingtreedialog.h"

#include "app/messages/messages.h"
#include "app/settings/windowsettings.h"
#include "core/controllers/browstreecontroller.h"
#include "core/controllers/collection.h"
#include "models/trees/browsingtreetablemodel.h"
#include "models/trees/treeroles.h"
#include "ui/dialogs/nameinput.h"
#include "ui/dialogs/tabledialoglayout.h"
#include "ui/widgets/browsingtreesdelegate.h"
#include "ui/widgets/firstsize.h"
#include "ui/widgets/fontscale.h"
#include "ui/widgets/tableview.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QPushButton>
#include <QShortcut>

namespace {
const QString geometryKey = QStringLiteral("BrowsingTreeDialog/geometry");
const QString headerKey = QStringLiteral("BrowsingTreeTable/geometry");
constexpr QSize usualSize(440, 340);
constexpr int usualNameWidth = 280;
constexpr int rowPadding = 8;
} // namespace

BrowsingTreeDialog::BrowsingTreeDialog(BrowsTreeController *controller, QWidget *parent)
    : QDialog(parent),
      m_controller(controller),
      m_model(new BrowsingTreeTableModel(controller, this)),
      m_view(new TableView(this)),
      m_create(
          new QPushButton(QIcon(QStringLiteral(":icons/add.png")), tr("&Create new Browsing Tree"), this)),
      m_delete(new QPushButton(QIcon(QStringLiteral(":icons/minus.png")), tr("&Delete Browsing Tree"), this))
{
    setObjectName(QStringLiteral("BrowsingTreeDialog"));
    setWindowTitle(tr("Browsing Trees"));
    connect(m_model, &BrowsingTreeTableModel::showError, this, &BrowsingTreeDialog::showError);
    connect(m_model, &BrowsingTreeTableModel::treeDuplicated, this, [this](const QModelIndex &other) {
        m_view->setCurrentIndex(other);
        emit treeDuplicated();
    });
    connect(controller->collection(), &Collection::allDataReloaded, m_model,
            &BrowsingTreeTableModel::refresh);
    connect(controller, &QObject::destroyed, m_model, &BrowsingTreeTableModel::forgetHost);
    // The window closes the database once no dialog is open; the list may be lost while it is read.
    connect(controller->collection(), &Collection::connectionError, this, &QDialog::reject,
            Qt::QueuedConnection);
    m_model->load();
    // The dialog opens with the shown tree as its current row.
    m_currentId = controller->currentBrowsingTree();
    buildTable();

    layOutTableDialog(
        this,
        tr("All who share this database see the same trees. Which one is shown here is your own "
           "choice."),
        m_view, makeButtons());
    updateButtons();
    restoreLayout();
    m_view->setFocus();
}

void BrowsingTreeDialog::buildTable()
{
    m_view->setObjectName(QStringLiteral("treesTable"));
    m_view->setAccessibleName(tr("Browsing Trees"));
    m_view->setDragDropMode(QAbstractItemView::NoDragDrop);
    m_view->setSelectionMode(QAbstractItemView::SingleSelection);
    m_view->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed);
    m_view->setItemDelegate(new BrowsingTreesDelegate(m_view));
    m_view->setModel(m_model);
    m_view->verticalHeader()->setDefaultSectionSize(m_view->fontMetrics().height() + rowPadding);
    setUpRows();

    // Between a reset and the answer to it, a view that gets the focus takes the first row.
    connect(m_model, &QAbstractItemModel::modelAboutToBeReset, this, [this] { m_isReset = true; });
    // After the view's own answer to a reset, which closes all editors.
    connect(m_model, &QAbstractItemModel::modelReset, this, &BrowsingTreeDialog::setUpRows,
            Qt::QueuedConnection);
    connect(m_view->selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this](const QModelIndex &current) {
                if (current.isValid() && !m_isReset)
                    m_currentId = current.data(TreeListRole::TreeId).toLongLong();
                updateButtons();
            });
    connect(m_view, &TableView::keyPressed, this, &BrowsingTreeDialog::handleKey);
    auto *shortcut = new QShortcut(QKeySequence::Delete, m_view);
    shortcut->setContext(Qt::WidgetShortcut);
    connect(shortcut, &QShortcut::activated, this, &BrowsingTreeDialog::deleteTree);
}

QLayout *BrowsingTreeDialog::makeButtons()
{
    m_create->setObjectName(QStringLiteral("createTreeButton"));
    m_delete->setObjectName(QStringLiteral("deleteTreeButton"));
    m_create->setToolTip(tr("Make an empty tree"));
    connect(m_create, &QPushButton::clicked, this, &BrowsingTreeDialog::createTree);
    m_delete->setToolTip(tr("Delete the tree of the current row for everybody; tags and files stay (%1)")
                             .arg(QKeySequence(QKeySequence::Delete).toString(QKeySequence::NativeText)));
    connect(m_delete, &QPushButton::clicked, this, &BrowsingTreeDialog::deleteTree);
    for (QPushButton *button : {m_create, m_delete})
        button->setAutoDefault(false); // Return in the table must not press one

    auto *row = new QHBoxLayout;
    row->addWidget(m_create);
    row->addStretch();
    row->addWidget(m_delete);
    return row;
}

void BrowsingTreeDialog::restoreLayout()
{
    if (!restoreGeometry(WindowSettings::layout(geometryKey)))
        FirstSize::byFont(this, usualSize);
    QHeaderView *header = m_view->horizontalHeader();
    if (!header->restoreState(WindowSettings::layout(headerKey)))
        header->resizeSection(BrowsingTreeTableModel::NameColumn, FontScale::byFont(usualNameWidth, this));
    header->setStretchLastSection(true);
}

void BrowsingTreeDialog::setUpRows()
{
    m_isReset = false;
    for (int row = 0; row < m_model->rowCount(); ++row)
        m_view->openPersistentEditor(m_model->index(row, BrowsingTreeTableModel::SelectColumn));
    const QModelIndex current = m_model->indexOf(m_currentId);
    m_view->setCurrentIndex(current.isValid() ? current : m_model->index(0, 0));
    updateButtons();
}

void BrowsingTreeDialog::createTree()
{
    NameInput::ask(this, tr("Create new Browsing Tree"), tr("Name of new browsing tree:"),
                   [this](const QString &name) {
                       const QModelIndex made = m_model->addTree(name.trimmed());
                       if (made.isValid())
                           m_currentId = made.data(TreeListRole::TreeId).toLongLong();
                       return made.isValid();
                   });
}

void BrowsingTreeDialog::deleteTree()
{
    const QPersistentModelIndex tree(m_view->currentIndex());
    if (!tree.isValid() || !m_controller || m_controller->isReadOnly())
        return;
    const QString title = tr("Delete browsing tree");
    if (BrowsingTreeTableModel::isDefaultTree(tree)) {
        Messages::warning(this, title, tr("Default browsing tree can not be deleted."));
        return;
    }
    const QString name = tree.sibling(tree.row(), BrowsingTreeTableModel::NameColumn).data().toString();
    if (!mayDelete(name))
        return;
    // An edit that waits for the changes of others has had its word.
    bool isExplained = false;
    const auto warnings = connect(m_controller->collection(), &Collection::showTempWarning, this,
                                  [&isExplained] { isExplained = true; });
    // It may have gone under the question.
    const bool isRemoved = tree.isValid() && m_model->removeTree(tree);
    disconnect(warnings);
    if (!isRemoved && !isExplained)
        Messages::warning(this, title, tr("Selected browsing tree can not be deleted."));
}

bool BrowsingTreeDialog::mayDelete(const QString &name)
{
    Messages::Box box;
    box.icon = QMessageBox::Question;
    box.title = tr("Delete browsing tree");
    box.text = tr("The following Browsing Tree will be deleted: %1.").arg(name);
    box.buttons = QMessageBox::Ok | QMessageBox::Cancel;
    box.defaultButton = QMessageBox::Cancel;
    return Messages::run(this, box).button == QMessageBox::Ok;
}

/** Space and Return show the tree of the current row, whichever column is current. */
void BrowsingTreeDialog::handleKey(QKeyEvent *event)
{
    const bool isChoice =
        event->key() == Qt::Key_Space || event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    const QModelIndex current = m_view->currentIndex();
    if (!isChoice || m_view->isEditing() || !current.isValid())
        return;
    m_model->setData(current.siblingAtColumn(BrowsingTreeTableModel::SelectColumn), Qt::Checked,
                     Qt::CheckStateRole);
    event->accept();
}

void BrowsingTreeDialog::updateButtons()
{
    const bool isWritable = m_controller && !m_controller->isReadOnly();
    m_create->setEnabled(isWritable);
    m_delete->setEnabled(isWritable && m_view->currentIndex().isValid());
}

void BrowsingTreeDialog::done(int result)
{
    WindowSettings::setLayout(geometryKey, saveGeometry());
    WindowSettings::setLayout(headerKey, m_view->horizontalHeader()->saveState());
    QDialog::done(result);
}
