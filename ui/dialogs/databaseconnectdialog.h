#pragma once

#include "app/settings/dbdetails.h"

#include <QDialog>

#include <memory>

class QLineEdit;

namespace Ui {
class DatabaseConnectDialog;
}

/**
 * Asks for a database on a server and for who connects to it. Accepted only with details that can be tried;
 * run again it still holds what was typed. The password is neither stored nor shown.
 */
class DatabaseConnectDialog : public QDialog
{
    Q_OBJECT

public:
    explicit DatabaseConnectDialog(const DBDetails &details, QWidget *parent = nullptr);
    ~DatabaseConnectDialog() override;

    /** Those of a server database. */
    DBDetails details() const;

public slots:
    void accept() override;

protected:
    void showEvent(QShowEvent *event) override;

private:
    /** The first field that holds nothing of use, null when all can be tried; the password may be empty. */
    QLineEdit *invalidField() const;

    std::unique_ptr<Ui::DatabaseConnectDialog> m_ui;
};
