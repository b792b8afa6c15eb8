#pragma once

#include <QDialog>

#include <memory>

class FeedbackSender;

namespace Ui {
class FeedbackDialog;
}

/**
 * Lets the user write to the makers of the program. It deletes itself once the message has arrived; until
 * then closing it only puts it aside, with what was typed.
 */
class FeedbackDialog : public QDialog
{
    Q_OBJECT

public:
    explicit FeedbackDialog(QWidget *parent = nullptr);
    ~FeedbackDialog() override;

public slots:
    /** Sends the message; nothing of it is lost when that fails. */
    void accept() override;

private:
    void finish(bool isRecorded);
    void error();
    void updateAvailability();
    QWidget *boxParent();

    std::unique_ptr<Ui::FeedbackDialog> m_ui;
    FeedbackSender *m_sender;
    bool m_isSending = false;
};
