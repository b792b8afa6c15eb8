#include "ui/dialogs/filelistmodel.h"

#include "app/settings/showntext.h"

#include <QDir>

void FileListModel::append(const QStringList &paths)
{
    if (paths.isEmpty())
        return;
    beginInsertRows(QModelIndex(), m_paths.size(), m_paths.size() + paths.size() - 1);
    m_paths += paths;
    endInsertRows();
}

int FileListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_paths.size();
}

int FileListModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant FileListModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || (role != Qt::DisplayRole && role != Qt::ToolTipRole))
        return {};
    const QString &path = m_paths.at(index.row());
    if (role == Qt::ToolTipRole)
        return ShownText::toolTip(QDir::toNativeSeparators(path));
    const int slash = path.lastIndexOf(QLatin1Char('/'));
    const QString text = index.column() == NameColumn
                             ? path.mid(slash + 1)
                             : QDir::toNativeSeparators(path.left(slash == 0 ? 1 : slash));
    return ShownText::cut(text);
}

QVariant FileListModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    return section == NameColumn ? tr("Name") : tr("Directory");
}
