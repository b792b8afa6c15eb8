#include "ui/dialogs/duplicateprompt.h"

#include "app/messages/messages.h"
#include "app/settings/showntext.h"
#include "core/controllers/mainviewcontroller.h"
#include "core/records/file.h"
#include "core/records/filekind.h"
#include "models/contents/contentsmodel.h"
#include "ui/dialogs/contentmatchmodel.h"
#include "ui/dialogs/namematchdelegate.h"
#include "ui/dialogs/namematchmodel.h"
#include "ui/widgets/firstsize.h"
#include "ui/widgets/fontscale.h"
#include "ui_duplicateprompt.h"

#include <QClipboard>
#include <QDeadlineTimer>
#include <QDebug>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLocale>
#include <QProgressDialog>
#include <QPushButton>
#include <QWindow>

#include <algorithm>

namespace {

constexpr int sizeColumnWidth = 110;
constexpr int dateColumnWidth = 200;
constexpr int rowPadding = 6;
constexpr int longestWaitMilliseconds = 100;
constexpr int longestTagList = 400; // signs
constexpr int mostCopiedLines = 100000;

void prepareTable(TableView *table)
{
    table->setDragDropMode(QAbstractItemView::NoDragDrop);
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table->verticalHeader()->setDefaultSectionSize(table->fontMetrics().height() + rowPadding);
}

} // namespace

DuplicatePrompt::DuplicatePrompt(const PresentableDuplicates &duplicates, MainViewController *controller,
                                 QWidget *parent)
    : QDialog(parent), m_ui(std::make_unique<Ui::DuplicatePrompt>()), m_controller(controller)
{
    qDebug() << "Creating duplicate prompt...";
    QProgressDialog progress(tr("The duplicate prompt dialog is being created."), QString(), 0, 0, parent);
    progress.setWindowTitle(tr("Creating Duplicate Prompt"));
    progress.setWindowModality(Qt::ApplicationModal);
    progress.show();
    // Lets the window appear before the work; the user can touch nothing meanwhile.
    const QDeadlineTimer longestWait(longestWaitMilliseconds);
    do
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    while (!progress.windowHandle()->isExposed() && !longestWait.hasExpired());
    build(duplicates);
}

DuplicatePrompt::~DuplicatePrompt() = default;

void DuplicatePrompt::build(const PresentableDuplicates &duplicates)
{
    m_ui->setupUi(this);
    FirstSize::byFont(this, size());
    makeModels(duplicates);
    m_ui->headLabel->setText(headText(duplicates.matchedTagIds));
    m_ui->headLabel->setVisible(m_contentMatches->matchedCount() > 0);
    showContentMatches();
    showNameMatches();
    const bool hasContentMatches =
        !duplicates.contentMatches.isEmpty() || !duplicates.externalDuplicateGroups.isEmpty();
    m_ui->tabs->setCurrentWidget(hasContentMatches ? m_ui->contentTab : m_ui->nameTab);

    connect(m_ui->selectAllButton, &QPushButton::clicked, this, &DuplicatePrompt::selectAll);
    connect(m_ui->deselectAllButton, &QPushButton::clicked, this, &DuplicatePrompt::deselectAll);
    connect(m_ui->buttonBox, &QDialogButtonBox::accepted, this, &DuplicatePrompt::accept);
    connect(m_ui->buttonBox, &QDialogButtonBox::rejected, this, &DuplicatePrompt::reject);
    if (!m_controller)
        return;
    connect(m_controller, &MainViewController::additionSettled, this, &DuplicatePrompt::settle);
    // Nobody would answer any more, and what was chosen is still there.
    connect(m_controller, &QObject::destroyed, this, [this] { setWaiting(false); });
}

void DuplicatePrompt::makeModels(const PresentableDuplicates &duplicates)
{
    const auto lookUp = [this](const DuplicateFileInfo &info) {
        ContentMatchModel::KnownFile known;
        const ContentsModel *model = m_controller ? m_controller->contentsModel() : nullptr;
        const File *file = model ? model->fileAt(model->rowOf(info.fileId)) : nullptr;
        if (file) {
            known.tagNames = m_controller->tagNames(file->tags());
            known.isHyperlink = file->internal() == FileKind::hyperlink;
        }
        return known;
    };
    m_contentMatches = new ContentMatchModel(duplicates, lookUp, this);
    m_nameMatches = new NameMatchModel(duplicates.nameMatches, this);
}

QString DuplicatePrompt::headText(const QVector<qint64> &tagIds) const
{
    const int count = m_contentMatches->matchedCount();
    const QString names = m_controller ? m_controller->tagNames(tagIds) : QString();
    QString head =
        count == 1 ? tr("One file is there already.") : tr("%Ln files are there already.", nullptr, count);
    if (names.isEmpty())
        return head;
    const bool isOneTag = tagIds.size() == 1;
    const QString got = count == 1 ? (isOneTag ? tr("It got the tag %1.") : tr("It got the tags %1."))
                                   : (isOneTag ? tr("They got the tag %1.") : tr("They got the tags %1."));
    return head + QLatin1Char(' ') + got.arg(ShownText::breakable(ShownText::cut(names, longestTagList)));
}

void DuplicatePrompt::showContentMatches()
{
    TableView *list = m_ui->contentMatchesList;
    prepareTable(list);
    list->setModel(m_contentMatches);
    list->horizontalHeader()->hide();
    list->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    connect(list, &TableView::keyPressed, this, &DuplicatePrompt::copyLines);
}

void DuplicatePrompt::showNameMatches()
{
    const int choices = m_nameMatches->choiceCount();
    for (QWidget *control : std::initializer_list<QWidget *>{m_ui->nameMatchesTable, m_ui->selectAllButton,
                                                             m_ui->deselectAllButton})
        control->setVisible(choices > 0);
    if (choices > 0) {
        fillNameTable();
        m_ui->nameMatchesLabel->setText(
            choices > 1 ? tr("The following files have matching names. Deselect those you do not want added.")
                        : tr("The following files have matching names. Deselect the checked file if you do "
                             "not want it added."));
        return;
    }
    m_ui->nameMatchesLabel->setText(tr("No name duplicates."));
    // There is nothing that could be cancelled.
    m_ui->buttonBox->setStandardButtons(QDialogButtonBox::Ok);
}

void DuplicatePrompt::fillNameTable()
{
    TableView *table = m_ui->nameMatchesTable;
    prepareTable(table);
    table->setSelectionMode(QAbstractItemView::SingleSelection);
    table->setItemDelegate(new NameMatchDelegate(table));
    table->setModel(m_nameMatches);
    QHeaderView *header = table->horizontalHeader();
    header->setSectionResizeMode(NameMatchModel::FileColumn, QHeaderView::Stretch);
    header->resizeSection(NameMatchModel::SizeColumn, FontScale::byFont(sizeColumnWidth, this));
    header->resizeSection(NameMatchModel::DateColumn, FontScale::byFont(dateColumnWidth, this));
    // The first box, for Space.
    table->setCurrentIndex(m_nameMatches->index(1, NameMatchModel::FileColumn));
    connect(table, &TableView::keyPressed, this, &DuplicatePrompt::toggleChoice);
}

void DuplicatePrompt::copyLines(QKeyEvent *event)
{
    if (!event->matches(QKeySequence::Copy))
        return;
    event->accept();
    QStringList lines;
    int selectedCount = 0;
    QItemSelection selection = m_ui->contentMatchesList->selectionModel()->selection();
    std::sort(selection.begin(), selection.end(),
              [](const QItemSelectionRange &left, const QItemSelectionRange &right) {
                  return left.top() < right.top();
              });
    for (const QItemSelectionRange &range : qAsConst(selection)) {
        selectedCount += range.height();
        for (int row = range.top(); row <= range.bottom() && lines.size() < mostCopiedLines; ++row)
            lines.append(m_contentMatches->line(row));
    }
    QGuiApplication::clipboard()->setText(lines.join(QLatin1Char('\n')));
    if (selectedCount > lines.size())
        Messages::information(this, tr("Copy"),
                              tr("Only the first %1 of the %2 selected lines were copied.")
                                  .arg(QLocale().toString(lines.size()), QLocale().toString(selectedCount)));
}

/** Space works the box of the current row, whichever column is current. */
void DuplicatePrompt::toggleChoice(QKeyEvent *event)
{
    const QModelIndex current = m_ui->nameMatchesTable->currentIndex();
    if (event->key() != Qt::Key_Space || event->modifiers() != Qt::NoModifier || !current.isValid())
        return;
    const QModelIndex box = current.siblingAtColumn(NameMatchModel::FileColumn);
    const bool isChosen = box.data(Qt::CheckStateRole).toInt() == Qt::Checked;
    m_nameMatches->setData(box, isChosen ? Qt::Unchecked : Qt::Checked, Qt::CheckStateRole);
    event->accept();
}

QStringList DuplicatePrompt::chosenPaths() const
{
    return m_nameMatches->chosenPaths();
}

void DuplicatePrompt::accept()
{
    // Return may be pressed once more while the worker adds.
    if (!m_awaited.isEmpty())
        return;
    const QStringList chosen = chosenPaths();
    if (chosen.isEmpty()) {
        QDialog::accept();
    } else if (!m_controller) {
        Messages::warning(this, windowTitle(), tr("The database is closed."));
    } else if (m_controller->addFilesList(chosen)) {
        m_awaited = chosen;
        setWaiting(true);
    }
}

void DuplicatePrompt::settle(const QStringList &paths, bool areAdded)
{
    if (m_awaited.isEmpty() || paths != m_awaited)
        return;
    setWaiting(false);
    if (areAdded)
        QDialog::accept();
}

void DuplicatePrompt::setWaiting(bool isWaiting)
{
    if (!isWaiting)
        m_awaited.clear();
    m_ui->tabs->setEnabled(!isWaiting);
    m_ui->buttonBox->button(QDialogButtonBox::Ok)->setEnabled(!isWaiting);
}

void DuplicatePrompt::selectAll()
{
    m_nameMatches->chooseAll(true);
}

void DuplicatePrompt::deselectAll()
{
    m_nameMatches->chooseAll(false);
}
