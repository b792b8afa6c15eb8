#include "ui/dialogs/filelocationdialog.h"

#include "app/messages/filedialogs.h"
#include "app/messages/messages.h"
#include "app/settings/showntext.h"
#include "app/settings/trackingsettings.h"
#include "core/controllers/filelocation.h"
#include "core/controllers/mainviewcontroller.h"
#include "core/records/file.h"
#include "models/contents/contentsmodel.h"
#include "ui/dialogs/deletionquestion.h"
#include "ui/dialogs/progressdialog.h"
#include "ui/widgets/firstsize.h"
#include "ui_filelocationdialog.h"

#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <QShortcut>

#include <algorithm>

namespace {
/** Empty for a file that is not known. */
QString idCodeOf(const ContentsModel &contents, qint64 fileId)
{
    const File *file = contents.fileAt(contents.rowOf(fileId));
    return file ? file->idCode() : QString();
}
} // namespace

FileLocationDialog::FileLocationDialog(MainViewController *controller, const QVector<qint64> &missingIds,
                                       QWidget *parent)
    : QDialog(parent),
      m_ui(std::make_unique<Ui::FileLocationDialog>()),
      m_controller(controller),
      m_missingIds(missingIds)
{
    m_ui->setupUi(this);
    FirstSize::byFont(this, size());
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    connectButtons();
    // Its files are gone with the database.
    connect(controller, &QObject::destroyed, this, &QDialog::reject);
    for (const qint64 fileId : missingIds)
        // An id may be another file's by the time that the dialog is accepted.
        m_idCodes.insert(fileId, idCodeOf(*controller->contentsModel(), fileId));
    showRemaining();
}

FileLocationDialog::~FileLocationDialog() = default;

void FileLocationDialog::connectButtons()
{
    connect(m_ui->missingFiles, &QListWidget::itemDoubleClicked, this,
            &FileLocationDialog::locateFileFromItem);
    // Before the dialog takes the key for its Ok button.
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
        auto *shortcut = new QShortcut(key, m_ui->missingFiles, nullptr, nullptr, Qt::WidgetShortcut);
        connect(shortcut, &QShortcut::activated, this,
                [this] { locateFileFromItem(m_ui->missingFiles->currentItem()); });
    }
    connect(m_ui->folders, &QListWidget::itemSelectionChanged, this, &FileLocationDialog::updateButtons);
    connect(m_ui->addFolderButton, &QPushButton::clicked, this, &FileLocationDialog::addFolder);
    connect(m_ui->removeFolderButton, &QPushButton::clicked, this, &FileLocationDialog::removeSelectedFolder);
    connect(m_ui->deleteLinksButton, &QPushButton::clicked, this, &FileLocationDialog::askForDeletion);
    connect(m_ui->buttonBox, &QDialogButtonBox::accepted, this, &FileLocationDialog::onlyApplyFoundFiles);
    connect(m_ui->buttonBox, &QDialogButtonBox::rejected, this, &FileLocationDialog::reject);
}

QHash<qint64, QString> FileLocationDialog::locatedFiles() const
{
    QHash<qint64, QString> located;
    for (const QHash<qint64, QString> *paths : {&m_found, &m_chosen}) {
        for (auto it = paths->cbegin(); it != paths->cend(); ++it) {
            if (isStillMeant(it.key()))
                located.insert(it.key(), it.value());
        }
    }
    return located;
}

QVector<qint64> FileLocationDialog::linksToDelete() const
{
    return m_deletesRest ? remaining() : QVector<qint64>();
}

void FileLocationDialog::accept()
{
    m_deletesRest = true;
    QDialog::accept();
}

void FileLocationDialog::onlyApplyFoundFiles()
{
    m_deletesRest = false;
    QDialog::accept();
}

void FileLocationDialog::askForDeletion()
{
    if (confirmDeletion(this, tr("Do you really want to delete the selected links?")))
        accept();
}

void FileLocationDialog::addFolder()
{
    const QString folder = FileDialogs::existingDirectory(
        this, tr("Add Folder"), TrackingSettings::lastLocationDir(QDir::homePath()));
    if (folder.isEmpty() || !m_controller)
        return;
    TrackingSettings::setLastLocationDir(folder);
    if (m_ui->folders->findItems(folder, Qt::MatchFixedString | Qt::MatchCaseSensitive).isEmpty())
        m_ui->folders->addItem(folder);
    evaluateFolderSelection();
}

void FileLocationDialog::removeSelectedFolder()
{
    const QList<QListWidgetItem *> selected = m_ui->folders->selectedItems();
    qDeleteAll(selected);
    if (!selected.isEmpty())
        evaluateFolderSelection();
}

void FileLocationDialog::locateFileFromItem(QListWidgetItem *item)
{
    if (!item || !m_controller)
        return;
    const qint64 fileId = item->data(Qt::UserRole).toLongLong();
    const QString oldPath = m_controller->fileData(fileId, Path).toString();
    // Files of the same kind first: it is mostly only the name or the folder that has changed.
    const int dot = oldPath.lastIndexOf(QLatin1Char('.'));
    const QString suffix = dot > oldPath.lastIndexOf(QLatin1Char('/')) ? oldPath.mid(dot) : QString();
    const QString filter = QLatin1Char('*') + suffix + QLatin1String(";;") + tr("All Files (*.*)");
    const QString path =
        FileDialogs::openFile(this, tr("Locate File"), QFileInfo(oldPath).absolutePath(), filter);
    if (path.isEmpty() || !m_controller)
        return;
    if (isTaken(path, fileId)) {
        Messages::warning(this, windowTitle(),
                          tr("The database has this file already. One file cannot take two places."));
        return;
    }
    m_chosen.insert(fileId, path);
    m_found.remove(fileId);
    // The others keep their places under the hand.
    delete item;
    showCounts();
}

bool FileLocationDialog::isTaken(const QString &path, qint64 fileId) const
{
    const QHash<qint64, QString> located = locatedFiles();
    const bool isLocated = std::find(located.cbegin(), located.cend(), path) != located.cend();
    return isLocated || FileLocation::isOfAnother(*m_controller->contentsModel(), path, fileId);
}

void FileLocationDialog::evaluateFolderSelection()
{
    m_found.clear();
    QStringList folders;
    for (int row = 0; row < m_ui->folders->count(); ++row)
        folders.append(m_ui->folders->item(row)->text());
    const QVector<qint64> ids = remaining();
    if (!folders.isEmpty() && !ids.isEmpty() && m_controller) {
        FileLocation location(*m_controller->contentsModel(), ids, folders);
        ProgressDialog progress(this);
        connect(&location, &FileLocation::finished, &progress, &ProgressDialog::accept);
        connect(m_controller, &QObject::destroyed, &progress, &ProgressDialog::reject);
        location.start();
        // A cancel keeps what has been found so far.
        if (progress.exec() == QDialog::Rejected && m_controller)
            location.finish();
        if (m_controller)
            m_found = location.located();
    }
    // What was chosen by hand comes before what was found.
    for (const QString &path : qAsConst(m_chosen))
        m_found.remove(m_found.key(path, 0));
    showRemaining();
}

bool FileLocationDialog::isStillMeant(qint64 fileId) const
{
    const QString idCode = m_idCodes.value(fileId);
    return m_controller && !idCode.isEmpty() && idCode == idCodeOf(*m_controller->contentsModel(), fileId);
}

QVector<qint64> FileLocationDialog::remaining() const
{
    QVector<qint64> ids;
    std::copy_if(m_missingIds.cbegin(), m_missingIds.cend(), std::back_inserter(ids), [this](qint64 fileId) {
        return !m_chosen.contains(fileId) && !m_found.contains(fileId) && isStillMeant(fileId);
    });
    return ids;
}

void FileLocationDialog::showRemaining()
{
    m_ui->missingFiles->clear();
    const QVector<qint64> ids = remaining();
    for (const qint64 fileId : ids) {
        const QString path = QDir::toNativeSeparators(
            m_controller ? m_controller->fileData(fileId, Path).toString() : QString());
        auto *item = new QListWidgetItem(ShownText::cut(path), m_ui->missingFiles);
        item->setData(Qt::UserRole, fileId);
    }
    showCounts();
}

void FileLocationDialog::showCounts()
{
    m_ui->foundLabel->setText(tr("Found: %1 of %2.")
                                  .arg(QLocale().toString(m_chosen.size() + m_found.size()),
                                       QLocale().toString(m_missingIds.size())));
    updateButtons();
}

void FileLocationDialog::updateButtons()
{
    m_ui->removeFolderButton->setEnabled(!m_ui->folders->selectedItems().isEmpty());
    m_ui->deleteLinksButton->setEnabled(m_ui->missingFiles->count() > 0);
}
