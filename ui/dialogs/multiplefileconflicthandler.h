#pragma once

#include "core/controllers/fileconflict.h"

#include <QDialog>

#include <memory>

namespace Ui {
class MultipleFileConflictHandler;
}

/**
 * Asks for each of several files whether it takes the place of the different one that has its name in the
 * folder, or goes there by a name that is free. Modal use.
 */
class MultipleFileConflictHandler : public QDialog
{
    Q_OBJECT

public:
    MultipleFileConflictHandler(const QString &folder, const QVector<FileConflict> &conflicts,
                                QWidget *parent = nullptr);
    ~MultipleFileConflictHandler() override;

    /** Ids and choices in the order of the conflicts. */
    FileConflictChoices choices() const;

public slots:
    void setReplaceAll();
    void setUseNewNames();

private:
    std::unique_ptr<Ui::MultipleFileConflictHandler> m_ui;
};
