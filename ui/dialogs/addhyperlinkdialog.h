#pragma once

#include <QDialog>

#include <functional>
#include <memory>

namespace Ui {
class AddHyperlinkDialog;
}

/**
 * Asks for one hyperlink and its description. Stays open, with its texts, until they are where they belong:
 * while a worker stores them it waits, and when that fails they can be tried once more.
 */
class AddHyperlinkDialog : public QDialog
{
    Q_OBJECT

public:
    explicit AddHyperlinkDialog(QWidget *parent = nullptr);
    ~AddHyperlinkDialog() override;

    /** Sends both to where they belong; settle() tells what became of them. False when they were refused. */
    using Taker = std::function<bool(const QString &hyperlink, const QString &description)>;
    void setTaker(const Taker &take) { m_take = take; }

    QString hyperlink() const;
    QString description() const;
    bool isWaiting() const { return m_isWaiting; }

public slots:
    void accept() override;
    /** Closes when the hyperlink that it waits for is stored, and can be used again when that is not. */
    void settle(const QStringList &hyperlinks, bool areStored);
    /** Nobody is left to store anything. */
    void stopWaiting() { setWaiting(false); }

private:
    void setWaiting(bool isWaiting);

    std::unique_ptr<Ui::AddHyperlinkDialog> m_ui;
    Taker m_take;
    bool m_isWaiting = false;
};
