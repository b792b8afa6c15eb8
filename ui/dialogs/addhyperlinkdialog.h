#pragma once

#include <QDialog>

#include <functional>
#include <memory>

namespace Ui {
class AddHyperlinkDialog;
}

/** Asks for one hyperlink and its description. Stays open, with its texts, until it has one that is taken. */
class AddHyperlinkDialog : public QDialog
{
    Q_OBJECT

public:
    explicit AddHyperlinkDialog(QWidget *parent = nullptr);
    ~AddHyperlinkDialog() override;

    /** Takes the hyperlink and its description where they belong; false leaves the dialog open. */
    using Taker = std::function<bool(const QString &hyperlink, const QString &description)>;
    void setTaker(const Taker &take) { m_take = take; }

    QString hyperlink() const;
    QString description() const;

public slots:
    void accept() override;

private:
    std::unique_ptr<Ui::AddHyperlinkDialog> m_ui;
    Taker m_take;
};
