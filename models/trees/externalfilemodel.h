#pragma once

#include <QFileSystemModel>
#include <QIcon>

/**
 * The files and folders of this computer for the external files dock. Read-only: what is dragged out is
 * offered as URLs, and only to be copied. A folder is read on a thread of the model once it is opened. GUI
 * thread.
 */
class ExternalFileModel : public QFileSystemModel
{
    Q_OBJECT

public:
    enum Column : int { NameColumn, SizeColumn, TypeColumn, ModifiedColumn };

    explicit ExternalFileModel(QObject *parent = nullptr);

    QVariant data(const QModelIndex &index, int role) const override;
    Qt::DropActions supportedDragActions() const override { return Qt::CopyAction; }

private:
    QIcon m_folder;
    QIcon m_file;
};
