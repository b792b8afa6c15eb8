#pragma once

#include <QAbstractTableModel>
#include <QStringList>

/** Paths of files in two columns, "Directory" and "Name". Rows are only added. */
class FileListModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column : int { DirectoryColumn, NameColumn, ColumnCount };

    using QAbstractTableModel::QAbstractTableModel;

    void append(const QStringList &paths);

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    /** Long texts are cut. */
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

private:
    QStringList m_paths;
};
