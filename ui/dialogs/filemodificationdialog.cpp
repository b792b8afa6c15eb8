#include "ui/dialogs/filemodificationdialog.h"

#include "app/settings/trackingsettings.h"
#include "ui/dialogs/filelistmodel.h"
#include "ui/widgets/firstsize.h"
#include "ui/widgets/fontscale.h"
#include "ui_filemodificationdialog.h"

#include <QHeaderView>

namespace {
constexpr int directoryWidth = 400;
constexpr int rowPadding = 6;
} // namespace

FileModificationDialog::FileModificationDialog(QWidget *parent)
    : QDialog(parent), m_ui(std::make_unique<Ui::FileModificationDialog>())
{
    m_ui->setupUi(this);
    FirstSize::byFont(this, size());
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    m_updated = makeList(m_ui->updatedFiles);
    m_deleted = makeList(m_ui->deletedFiles);
    updateTexts();
}

FileModificationDialog::~FileModificationDialog() = default;

FileListModel *FileModificationDialog::makeList(QTableView *view)
{
    auto *model = new FileListModel(this);
    view->setModel(model);
    view->verticalHeader()->hide();
    view->verticalHeader()->setDefaultSectionSize(view->fontMetrics().height() + rowPadding);
    view->horizontalHeader()->setStretchLastSection(true);
    view->horizontalHeader()->resizeSection(FileListModel::DirectoryColumn,
                                            FontScale::byFont(directoryWidth, view));
    return model;
}

void FileModificationDialog::add(const QStringList &updatedPaths,
                                 const DeletedFileRepresentations &deletedFiles)
{
    m_updated->append(updatedPaths);
    QStringList deletedPaths;
    for (const QPair<QString, QString> &file : deletedFiles)
        deletedPaths.append(file.second);
    m_deleted->append(deletedPaths);
    updateTexts();
}

void FileModificationDialog::updateTexts()
{
    m_ui->updatedLabel->setText(
        m_updated->rowCount() == 1
            ? tr("The following file has been edited or replaced.\nDetails have been updated.")
            : tr("The following files have been edited or replaced.\nDetails have been updated."));
    m_ui->deletedLabel->setText(
        m_deleted->rowCount() == 1
            ? tr("The following file was replaced externally and has now duplicate of the other file in the "
                 "database.\nThis file has been deleted from the database.")
            : tr("The following files were replaced externally and have now duplicates of the other files in "
                 "the database.\nThese files have been deleted from the database."));
    for (QWidget *widget :
         {static_cast<QWidget *>(m_ui->updatedLabel), static_cast<QWidget *>(m_ui->updatedFiles)})
        widget->setVisible(m_updated->rowCount() > 0);
    for (QWidget *widget :
         {static_cast<QWidget *>(m_ui->deletedLabel), static_cast<QWidget *>(m_ui->deletedFiles)})
        widget->setVisible(m_deleted->rowCount() > 0);
}

void FileModificationDialog::done(int result)
{
    if (m_ui->silenceBox->isChecked())
        TrackingSettings::setAdviseOfModifiedFiles(false);
    QDialog::done(result);
}
