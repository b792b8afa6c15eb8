#pragma once

#include <QDialog>

#include <memory>

struct ExportRequest;

namespace Ui {
class FileExportDialog;
}

/** Asks what goes out of a database beside the files themselves. */
class FileExportDialog : public QDialog
{
    Q_OBJECT

public:
    explicit FileExportDialog(QWidget *parent = nullptr);
    ~FileExportDialog() override;

    /** Puts what is ticked into a request. */
    virtual void fill(ExportRequest &request) const;

public slots:
    void accept() override;
    void reject() override;

protected:
    Ui::FileExportDialog &ui() const { return *m_ui; }

private:
    std::unique_ptr<Ui::FileExportDialog> m_ui;
};
