#pragma once

#include <QDialog>

#include <memory>

namespace Ui {
class AddHyperlinkDialog;
}

/** Asks for one hyperlink and its description. Accepted only with a link that is no local file. */
class AddHyperlinkDialog : public QDialog
{
    Q_OBJECT

public:
    explicit AddHyperlinkDialog(QWidget *parent = nullptr);
    ~AddHyperlinkDialog() override;

    QString hyperlink() const;
    QString description() const;

public slots:
    void accept() override;

private:
    std::unique_ptr<Ui::AddHyperlinkDialog> m_ui;
};
