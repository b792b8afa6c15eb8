#include "ui/dialogs/tagexportdialog.h"

#include "fileops/worker/exportrequest.h"
#include "ui/widgets/firstsize.h"
#include "ui_fileexportdialog.h"

#include <QButtonGroup>
#include <QRadioButton>

TagExportDialog::TagExportDialog(QWidget *parent) : FileExportDialog(parent), m_forms(new QButtonGroup(this))
{
    setObjectName(QStringLiteral("TagExportDialog"));
    setWindowTitle(tr("Export Tags"));
    ui().headingLabel->setText(tr("The selected tags are exported with the files that bear them."));
    addForm(ExportRequest::Database, tr("Database"));
    addForm(ExportRequest::Shell, tr("Shell, a database without the contents of files"));
    addForm(ExportRequest::Csv, tr("CSV File, a table of the files"));
    m_forms->button(ExportRequest::Database)->setChecked(true);
    connect(m_forms, &QButtonGroup::idToggled, this, &TagExportDialog::updateAvailability);
    FirstSize::byContents(this);
}

void TagExportDialog::addForm(int form, const QString &text)
{
    auto *button = new QRadioButton(text, this);
    button->setObjectName(QStringLiteral("form%1Button").arg(form));
    m_forms->addButton(button, form);
    ui().forms->addWidget(button);
}

void TagExportDialog::updateAvailability()
{
    // A table has one line a file, with the names of its tags.
    const bool isDatabase = m_forms->checkedId() != ExportRequest::Csv;
    for (QWidget *box : {ui().descriptionsBox, ui().relationshipsBox, ui().groupsBox})
        box->setEnabled(isDatabase);
}

void TagExportDialog::fill(ExportRequest &request) const
{
    FileExportDialog::fill(request);
    request.form = m_forms->checkedId();
}
