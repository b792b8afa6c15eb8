#pragma once

#include "fileops/files/shellfile.h"

#include <QAbstractListModel>
#include <QList>

/** Files of a shell with their sizes, a line each. */
class ShellFilesModel : public QAbstractListModel
{
    Q_OBJECT

public:
    explicit ShellFilesModel(const QList<ShellFile> &files, QObject *parent = nullptr)
        : QAbstractListModel(parent), m_files(files)
    {
    }

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role) const override;

private:
    const QList<ShellFile> m_files;
};
