#include "ui/dialogs/duplicateprompt.h"

#include "core/controllers/mainviewcontroller.h"
#include "core/file.h"
#include "core/filekind.h"
#include "models/contentsmodel.h"
#include "ui/dialogs/contentmatchreport.h"
#include "ui_duplicateprompt.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDebug>
#include <QFileInfo>
#include <QLocale>
#include <QProgressDialog>
#include <QTextDocument>
#include <QWindow>

namespace {

constexpr int pathRole = Qt::UserRole;
constexpr int sizeColumnWidth = 110;
constexpr int dateColumnWidth = 200;
constexpr int longestWaitMilliseconds = 100;

void fillColumns(QTreeWidgetItem &item, const QString &text, const DuplicateFileInfo &file)
{
    item.setText(0, text);
    item.setToolTip(0, Qt::convertFromPlainText(text));
    if (!file.lastModified.isValid())
        return;
    item.setText(1, QLocale().toString(file.size));
    item.setTextAlignment(1, Qt::AlignRight | Qt::AlignVCenter);
    item.setText(2, QLocale().toString(file.lastModified, QLocale::ShortFormat));
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
    showContentMatches(duplicates);
    showNameMatches(duplicates.nameMatches);
    const bool hasContentMatches =
        !duplicates.contentMatches.isEmpty() || !duplicates.externalDuplicateGroups.isEmpty();
    m_ui->tabs->setCurrentWidget(hasContentMatches ? m_ui->contentTab : m_ui->nameTab);

    connect(m_ui->selectAllButton, &QPushButton::clicked, this, &DuplicatePrompt::selectAll);
    connect(m_ui->deselectAllButton, &QPushButton::clicked, this, &DuplicatePrompt::deselectAll);
    connect(m_ui->buttonBox, &QDialogButtonBox::accepted, this, &DuplicatePrompt::accept);
    connect(m_ui->buttonBox, &QDialogButtonBox::rejected, this, &DuplicatePrompt::reject);
}

void DuplicatePrompt::showContentMatches(const PresentableDuplicates &duplicates)
{
    const ContentMatchReport report([this](const DuplicateFileInfo &info) {
        ContentMatchReport::KnownFile known;
        const ContentsModel *model = m_controller ? m_controller->contentsModel() : nullptr;
        const File *file = model ? model->fileAt(model->rowOf(info.fileId)) : nullptr;
        if (file) {
            known.tagNames = m_controller->tagNames(file->tags());
            known.isHyperlink = file->internal() == FileKind::hyperlink;
        }
        return known;
    });
    const QString text = report.text(duplicates);
    m_ui->contentMatchesEdit->setPlainText(text.isEmpty() ? tr("No content duplicates.") : text);
}

void DuplicatePrompt::showNameMatches(const QList<DuplicateMatch> &matches)
{
    m_ui->nameMatchesTree->setUpdatesEnabled(false);
    for (const DuplicateMatch &match : matches)
        addNameMatch(match);
    m_ui->nameMatchesTree->expandAll();
    QHeaderView *header = m_ui->nameMatchesTree->header();
    header->setStretchLastSection(false);
    header->setSectionResizeMode(0, QHeaderView::Stretch);
    header->resizeSection(1, sizeColumnWidth);
    header->resizeSection(2, dateColumnWidth);
    m_ui->nameMatchesTree->setUpdatesEnabled(true);

    const bool hasChoices = !m_choices.isEmpty();
    m_ui->nameMatchesTree->setVisible(hasChoices);
    m_ui->selectAllButton->setVisible(hasChoices);
    m_ui->deselectAllButton->setVisible(hasChoices);
    if (!hasChoices) {
        m_ui->nameMatchesLabel->setText(tr("No name duplicates."));
        return;
    }
    m_ui->nameMatchesLabel->setText(tr("The following files have matching names. Deselect ") +
                                    (m_choices.size() > 1
                                         ? tr("those you do not want added.")
                                         : tr("the checked file if you do not want it added.")));
}

void DuplicatePrompt::addNameMatch(const DuplicateMatch &match)
{
    auto *name = new QTreeWidgetItem(m_ui->nameMatchesTree);
    name->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
    name->setFirstColumnSpanned(true);
    for (const DuplicateFileInfo &file : match.addedFiles) {
        if (name->text(0).isEmpty())
            name->setText(0, QFileInfo(file.path).fileName());
        auto *choice = new QTreeWidgetItem(name);
        fillColumns(*choice, file.path, file);
        choice->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
        choice->setCheckState(0, Qt::Checked);
        choice->setData(0, pathRole, file.path);
        m_choices << choice;
    }
    for (const DuplicateFileInfo &file : match.databaseFiles) {
        auto *known = new QTreeWidgetItem(name);
        fillColumns(*known, tr("Database file: ") + file.path, file);
        known->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
    }
}

QStringList DuplicatePrompt::chosenPaths() const
{
    QStringList paths;
    for (const QTreeWidgetItem *choice : m_choices) {
        if (choice->checkState(0) == Qt::Checked)
            paths << choice->data(0, pathRole).toString();
    }
    return paths;
}

void DuplicatePrompt::selectAll()
{
    checkAll(Qt::Checked);
}

void DuplicatePrompt::deselectAll()
{
    checkAll(Qt::Unchecked);
}

void DuplicatePrompt::checkAll(Qt::CheckState state)
{
    for (QTreeWidgetItem *choice : qAsConst(m_choices))
        choice->setCheckState(0, state);
}
