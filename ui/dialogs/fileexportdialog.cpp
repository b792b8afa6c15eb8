#include "ui/dialogs/fileexportdialog.h"

#include "fileops/worker/exportrequest.h"
#include "ui_fileexportdialog.h"

FileExportDialog::FileExportDialog(QWidget *parent)
    : QDialog(parent), m_ui(std::make_unique<Ui::FileExportDialog>())
{
    m_ui->setupUi(this);
    connect(m_ui->buttonBox, &QDialogButtonBox::accepted, this, &FileExportDialog::accept);
    connect(m_ui->buttonBox, &QDialogButtonBox::rejected, this, &FileExportDialog::reject);
}

FileExportDialog::~FileExportDialog() = default;

void FileExportDialog::fill(ExportRequest &request) const
{
    request.exportDescriptions = m_ui->descriptionsBox->isChecked();
    request.exportTagRelationships = m_ui->relationshipsBox->isChecked();
    request.exportTagGroups = m_ui->groupsBox->isChecked();
}

void FileExportDialog::accept()
{
    QDialog::accept();
}

void FileExportDialog::reject()
{
    QDialog::reject();
}
