#include "ui/dialogs/databaseconnectdialog.h"

#include "app/messages/messages.h"
#include "app/settings/constants.h"
#include "ui_databaseconnectdialog.h"

#include <QPushButton>

namespace {
constexpr int highestPort = 65535;

/** Blanks around a name are slips of the hand; a password is left as it is. */
QString nameIn(const QLineEdit *edit)
{
    return edit->text().trimmed();
}

/** 0 for a text that is no port. */
int portIn(const QLineEdit *edit)
{
    bool isNumber = false;
    const int port = nameIn(edit).toInt(&isNumber);
    return isNumber && port > 0 && port <= highestPort ? port : 0;
}
} // namespace

DatabaseConnectDialog::DatabaseConnectDialog(const DBDetails &details, QWidget *parent)
    : QDialog(parent), m_ui(std::make_unique<Ui::DatabaseConnectDialog>())
{
    m_ui->setupUi(this);
    m_ui->hostEdit->setText(details.host());
    m_ui->portEdit->setText(QString::number(details.port()));
    m_ui->databaseEdit->setText(details.databaseName());
    m_ui->userEdit->setText(details.user());
    m_ui->passwordEdit->setText(details.password());
    // Still the Ok button, whose place goes by the desktop.
    m_ui->buttonBox->button(QDialogButtonBox::Ok)->setText(tr("&Connect"));
    connect(m_ui->buttonBox, &QDialogButtonBox::accepted, this, &DatabaseConnectDialog::accept);
    connect(m_ui->buttonBox, &QDialogButtonBox::rejected, this, &DatabaseConnectDialog::reject);
}

DatabaseConnectDialog::~DatabaseConnectDialog() = default;

DBDetails DatabaseConnectDialog::details() const
{
    return DBDetails(Constants::serverDatabase, nameIn(m_ui->hostEdit), portIn(m_ui->portEdit),
                     nameIn(m_ui->databaseEdit), nameIn(m_ui->userEdit), m_ui->passwordEdit->text());
}

QLineEdit *DatabaseConnectDialog::invalidField() const
{
    for (QLineEdit *edit : {m_ui->hostEdit, m_ui->portEdit, m_ui->databaseEdit, m_ui->userEdit}) {
        const bool isValid = edit == m_ui->portEdit ? portIn(edit) > 0 : !nameIn(edit).isEmpty();
        if (!isValid)
            return edit;
    }
    return nullptr;
}

void DatabaseConnectDialog::accept()
{
    QLineEdit *invalid = invalidField();
    if (!invalid) {
        QDialog::accept();
        return;
    }
    Messages::warning(this, tr("Invalid database details"), tr("Provided database details were invalid."));
    invalid->setFocus();
    invalid->selectAll();
}

void DatabaseConnectDialog::showEvent(QShowEvent *event)
{
    QDialog::showEvent(event);
    // From the recent list, and after a refusal, it is most often the password that is asked for.
    QLineEdit *first = invalidField();
    if (!first)
        first = m_ui->passwordEdit;
    first->setFocus();
    first->selectAll();
}
