#pragma once

#include "ui/dialogs/fileexportdialog.h"

class QButtonGroup;

/** Asks as what tags and their files go out of a database, and what goes with them. */
class TagExportDialog : public FileExportDialog
{
    Q_OBJECT

public:
    explicit TagExportDialog(QWidget *parent = nullptr);

    void fill(ExportRequest &request) const override;

private:
    void addForm(int form, const QString &text);
    void updateAvailability();

    QButtonGroup *m_forms;
};
