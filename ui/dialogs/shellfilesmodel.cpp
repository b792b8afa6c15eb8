#include "ui/dialogs/shellfilesmodel.h"

#include "app/settings/showntext.h"

#include <QLocale>

int ShellFilesModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_files.size();
}

QVariant ShellFilesModel::data(const QModelIndex &index, int role) const
{
    if (role != Qt::DisplayRole || index.row() < 0 || index.row() >= m_files.size())
        return {};
    const ShellFile &file = m_files.at(index.row());
    // Both in one call: a name may hold "%2" itself.
    return tr("%1, %2 bytes", nullptr, ShownText::forPlural(file.fileSize))
        .arg(ShownText::cut(file.fileName), QLocale().toString(file.fileSize));
}
