#include "ui/dialogs/addhyperlinkdialog.h"

#include "app/messages/messages.h"
#include "fileops/adding/hyperlinkcheck.h"
#include "ui/widgets/customiconwidget.h"
#include "ui_addhyperlinkdialog.h"

#include <QFile>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

AddHyperlinkDialog::AddHyperlinkDialog(QWidget *parent)
    : QDialog(parent), m_ui(std::make_unique<Ui::AddHyperlinkDialog>())
{
    m_ui->setupUi(this);
    auto *heading = new QHBoxLayout;
    heading->setSpacing(12);
    heading->addWidget(new CustomIconWidget(QIcon(QStringLiteral(":/icons/add-hyperlink.png")), 32, this));
    auto *text = new QLabel(tr("The address of a page or a mailbox, kept like a file."), this);
    text->setWordWrap(true);
    heading->addWidget(text, 1);
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
    QString refusal = HyperlinkCheck::reason(hyperlink());
    // The name of a file in the working directory would never become a hyperlink.
    if (refusal.isEmpty() && QFile::exists(hyperlink()))
        refusal = tr("Hyperlinks is file on the local file system");
    if (!refusal.isEmpty())
        Messages::warning(this, tr("Error"), refusal);
    else if (!m_take)
        QDialog::accept();
    else if (m_take(hyperlink(), description()))
        // What was typed stays until the worker tells that it is stored.
        setWaiting(true);
    m_ui->hyperlinkEdit->setFocus();
}

void AddHyperlinkDialog::settle(const QStringList &hyperlinks, bool areStored)
{
    if (!m_isWaiting || !hyperlinks.contains(hyperlink()))
        return;
    setWaiting(false);
    if (areStored)
        QDialog::accept();
    else
        m_ui->hyperlinkEdit->setFocus();
}

void AddHyperlinkDialog::setWaiting(bool isWaiting)
{
    m_isWaiting = isWaiting;
    m_ui->hyperlinkEdit->setEnabled(!isWaiting);
    m_ui->descriptionEdit->setEnabled(!isWaiting);
    m_ui->buttonBox->button(QDialogButtonBox::Ok)->setEnabled(!isWaiting);
}
