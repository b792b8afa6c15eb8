#pragma once

#include "fileops/worker/deletedfilerepresentations.h"

#include <QDialog>
#include <QStringList>

#include <memory>

class FileListModel;
class QLabel;
class QTableView;

namespace Ui {
class FileModificationDialog;
}

/**
 * Tells of external files whose records were refreshed, or had to go, as the files had changed. Further ones
 * join the lists while it shows. GUI thread.
 */
class FileModificationDialog : public QDialog
{
    Q_OBJECT

public:
    explicit FileModificationDialog(QWidget *parent = nullptr);
    ~FileModificationDialog() override;

    void add(const QStringList &updatedPaths, const DeletedFileRepresentations &deletedFiles);

public slots:
    /** Stores whether to be told of such files again. */
    void done(int result) override;

private:
    FileListModel *makeList(QTableView *view);
    void updateTexts();

    std::unique_ptr<Ui::FileModificationDialog> m_ui;
    FileListModel *m_updated = nullptr;
    FileListModel *m_deleted = nullptr;
};
