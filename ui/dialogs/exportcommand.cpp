#include "ui/dialogs/exportcommand.h"

#include "app/messages/filedialogs.h"
#include "app/messages/messages.h"
#include "app/settings/constants.h"
#include "app/settings/windowsettings.h"
#include "core/controllers/collection.h"
#include "core/controllers/exportselection.h"
#include "core/controllers/mainviewcontroller.h"
#include "fileops/files/regularfile.h"
#include "fileops/worker/exportrequest.h"
#include "ui/dialogs/tagexportdialog.h"

#include <QDir>
#include <QFileInfo>

namespace {
QString extensionOf(int form)
{
    switch (form) {
    case ExportRequest::Shell:
        return Constants::shellExtension;
    case ExportRequest::Csv:
        return Constants::csvExtension;
    default:
        return Constants::databaseExtension;
    }
}

bool mayReplace(QWidget *parent, const QString &path)
{
    Messages::Box box;
    box.icon = QMessageBox::Warning;
    box.title = ExportCommand::tr("Exporting");
    box.text = ExportCommand::tr("\"%1\" already exists.\nDo you want to replace it?")
                   .arg(QFileInfo(path).fileName());
    box.buttons = QMessageBox::Yes | QMessageBox::No;
    box.defaultButton = QMessageBox::No;
    return Messages::run(parent, box).button == QMessageBox::Yes;
}
} // namespace

QString Database::askExportTarget(QWidget *parent, const QString &filter)
{
    const QString extension = filter.mid(1);
    QString path =
        FileDialogs::saveFile(parent, ExportCommand::tr("Export Target"),
                              WindowSettings::lastDatabaseDir(QDir::homePath()), filter, extension.mid(1));
    if (path.isEmpty())
        return path;
    path = QFileInfo(path).absoluteFilePath();
    WindowSettings::setLastDatabaseDir(QFileInfo(path).absolutePath());
    if (path.endsWith(extension, Qt::CaseInsensitive))
        return path;
    // The dialog asked about another name.
    path += extension;
    return !QFileInfo::exists(path) || mayReplace(parent, path) ? path : QString();
}

ExportCommand::ExportCommand(MainViewController *controller, QWidget *parent)
    : m_controller(controller), m_parent(parent)
{
}

void ExportCommand::exportSelection(int form, const ExportSelection &selection)
{
    if (selection.isEmpty()) {
        Messages::information(m_parent, tr("Exporting"), tr("What is selected has no files to export."));
        return;
    }
    ExportRequest request;
    request.form = form;
    request.fileIds = selection.fileIds;
    request.tagIds = selection.tagIds;
    request.addAllTagsOfFiles = selection.addAllTagsOfFiles;
    if (form != ExportRequest::Csv) {
        FileExportDialog options(m_parent);
        if (options.exec() != QDialog::Accepted)
            return;
        options.fill(request);
    }
    askTarget(request);
}

void ExportCommand::exportTags(const QVector<qint64> &tagIds)
{
    if (tagIds.isEmpty() || !m_controller)
        return;
    TagExportDialog options(m_parent);
    if (options.exec() != QDialog::Accepted || !m_controller)
        return;
    const ExportSelection selection = ExportSelection::ofTags(*m_controller, tagIds);
    ExportRequest request;
    request.fileIds = selection.fileIds;
    request.tagIds = selection.tagIds;
    request.addAllTagsOfFiles = selection.addAllTagsOfFiles;
    options.fill(request);
    askTarget(request);
}

void ExportCommand::askTarget(ExportRequest &request)
{
    request.path = Database::askExportTarget(m_parent, QLatin1Char('*') + extensionOf(request.form));
    // The database may have gone while the dialog stood open.
    if (request.path.isEmpty() || !m_controller)
        return;
    if (isOpenDatabase(request.path))
        Messages::warning(m_parent, tr("Exporting"), tr("Cannot export to currently open database!"));
    else
        m_controller->exportDatabase(request);
}

bool ExportCommand::isOpenDatabase(const QString &path) const
{
    const Collection *collection = m_controller->collection();
    if (collection->dbType() != Constants::localDatabase)
        return false;
    const QString open = collection->databaseName();
    const QString real = QFileInfo(path).canonicalFilePath();
    // By name, by what links lead to, and by the file itself, which may have two names.
    return path == open || (!real.isEmpty() && real == QFileInfo(open).canonicalFilePath()) ||
           RegularFile::isSame(path, open);
}
