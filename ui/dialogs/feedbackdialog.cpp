#include "ui/dialogs/feedbackdialog.h"

#include "app/messages/messages.h"
#include "app/settings/constants.h"
#include "net/feedbacksender.h"
#include "ui/widgets/firstsize.h"
#include "ui_feedbackdialog.h"

#include <QDebug>
#include <QPushButton>

FeedbackDialog::FeedbackDialog(QWidget *parent)
    : QDialog(parent), m_ui(std::make_unique<Ui::FeedbackDialog>()), m_sender(new FeedbackSender(this))
{
    m_ui->setupUi(this);
    m_ui->versionLabel->setText(tr("Version: %1").arg(Constants::programVersion));
    m_ui->buttonBox->button(QDialogButtonBox::Ok)->setText(tr("&Send"));
    connect(m_ui->messageEdit, &QTextEdit::textChanged, this, &FeedbackDialog::updateAvailability);
    connect(m_sender, &FeedbackSender::finished, this, &FeedbackDialog::finish);
    updateAvailability();
    FirstSize::byContents(this);
}

FeedbackDialog::~FeedbackDialog() = default;

void FeedbackDialog::updateAvailability()
{
    const bool hasMessage = !m_ui->messageEdit->toPlainText().trimmed().isEmpty();
    m_ui->buttonBox->button(QDialogButtonBox::Ok)->setEnabled(hasMessage && !m_isSending);
    m_ui->messageEdit->setReadOnly(m_isSending);
    m_ui->emailEdit->setReadOnly(m_isSending);
}

void FeedbackDialog::accept()
{
    qDebug() << "FeedbackDialog::accept()";
    if (m_isSending)
        return;
    m_isSending = true;
    updateAvailability();
    m_sender->send(m_ui->messageEdit->toPlainText(), m_ui->emailEdit->text());
}

void FeedbackDialog::finish(bool isRecorded)
{
    m_isSending = false;
    updateAvailability();
    if (!isRecorded) {
        error();
        return;
    }
    Messages::information(boxParent(), tr("Feedback Received"),
                          tr("Your message has been recorded. Thank you."));
    QDialog::accept();
    deleteLater();
}

QWidget *FeedbackDialog::boxParent()
{
    // It may have been closed while the message was on its way.
    return isVisible() ? this : parentWidget();
}

void FeedbackDialog::error()
{
    Messages::warning(boxParent(), tr("Network error"), tr("An error occurred while sending feedback."));
}
