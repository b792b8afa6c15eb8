#include "models/trees/externalfilemodel.h"

#include "app/settings/showntext.h"

#include <QFileIconProvider>

namespace {

/**
 * Tells next to nothing. The model asks on its thread, which lives a little longer than the model, and the
 * desktop's provider would read its whole database of types at the first file.
 */
class NoIconProvider : public QFileIconProvider
{
public:
    QIcon icon(IconType) const override { return {}; }
    QIcon icon(const QFileInfo &) const override { return {}; }
    // Rows without a text here are lost when the model sorts.
    QString type(const QFileInfo &) const override { return QStringLiteral("file"); }
};

} // namespace

ExternalFileModel::ExternalFileModel(QObject *parent)
    : QFileSystemModel(parent),
      m_folder(QStringLiteral(":/icons/folder.png")),
      m_file(QStringLiteral(":/icons/paper.png"))
{
    // Outlives all models, and with them the thread that asks it.
    static NoIconProvider noIcons;
    setIconProvider(&noIcons);
    // Nobody is to rename or delete the computer's files in passing.
    setReadOnly(true);
    setFilter(QDir::AllEntries | QDir::AllDirs | QDir::NoDotAndDotDot);
}

QVariant ExternalFileModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return {};
    if (role == Qt::DecorationRole && index.column() == NameColumn)
        return isDir(index) ? m_folder : m_file;
    // Names are cut where the column is narrow.
    if (role == Qt::ToolTipRole)
        return ShownText::toolTip(QDir::toNativeSeparators(filePath(index)));
    return QFileSystemModel::data(index, role);
}
