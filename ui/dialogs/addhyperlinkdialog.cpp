#include "ui/dialogs/addhyperlinkdialog.h"

#include "app/messages.h"
#include "ui/views/customiconwidget.h"
#include "ui_addhyperlinkdialog.h"

#include <QDir>
#include <QFile>
#include <QHBoxLayout>
#include <QLabel>
#include <QUrl>

AddHyperlinkDialog::AddHyperlinkDialog(QWidget *parent)
    : QDialog(parent), m_ui(std::make_unique<Ui::AddHyperlinkDialog>())
{
    m_ui->setupUi(this);
    auto *heading = new QHBoxLayout;
    heading->setSpacing(12);
    heading->addWidget(new CustomIconWidget(QIcon(QStringLiteral(":/icons/add-hyperlink.png")), 32, this));
    heading->addWidget(new QLabel(tr("The address of a page or a mailbox, kept like a file."), this), 1);
    m_ui->layout->insertLayout(0, heading);
    connect(m_ui->buttonBox, &QDialogButtonBox::accepted, this, &AddHyperlinkDialog::accept);
    connect(m_ui->buttonBox, &QDialogButtonBox::rejected, this, &AddHyperlinkDialog::reject);
}

AddHyperlinkDialog::~AddHyperlinkDialog() = default;

QString AddHyperlinkDialog::hyperlink() const
{
    return m_ui->hyperlinkEdit->text().trimmed();
}

QString AddHyperlinkDialog::description() const
{
    return m_ui->descriptionEdit->text().trimmed();
}

void AddHyperlinkDialog::accept()
{
    const QUrl url(hyperlink());
    QString refusal;
    // A path counts as local even when no file is there, as it would never become a hyperlink. Nor would the
    // name of a file in the working directory.
    if (url.isLocalFile() || QDir::isAbsolutePath(hyperlink()) || QFile::exists(hyperlink()))
        refusal = tr("Hyperlinks is file on the local file system");
    else if (url.isEmpty())
        refusal = tr("Hyperlink must not be empty.");

    if (refusal.isEmpty()) {
        QDialog::accept();
        return;
    }
    Messages::warning(this, tr("Error"), refusal);
    m_ui->hyperlinkEdit->setFocus();
}
