#pragma once

#include <QDialog>

#include <memory>

namespace Ui {
class FileOperationProgress;
}

/**
 * The progress of a file operation, application-modal while it shows. Cancel, Esc and the close button only
 * ask: the window stays until the operation has ended.
 */
class FileOperationProgress : public QDialog
{
    Q_OBJECT

public:
    explicit FileOperationProgress(QWidget *parent = nullptr);
    ~FileOperationProgress() override;

signals:
    void canceled();

public slots:
    /** Shows the window with the label of an operation, which also stands for progress without a text. */
    void startProgress(const QString &text);
    void doingSomething(const QString &text);
    void setProgress(float percent);
    void setMaximumToPercent();
    void setProgressUnknown();

    void reject() override;

private:
    void closeEvent(QCloseEvent *event) override;

    std::unique_ptr<Ui::FileOperationProgress> m_ui;
};
