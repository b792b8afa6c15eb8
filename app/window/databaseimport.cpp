#include "app/window/databaseimport.h"

#include "app/messages/filedialogs.h"
#include "app/messages/messages.h"
#include "app/settings/constants.h"
#include "app/settings/windowsettings.h"
#include "core/controllers/collection.h"
#include "core/controllers/mainviewcontroller.h"
#include "ui/dialogs/databasecontentsselector.h"
#include "ui/dialogs/shellimportnotification.h"

#include <QDir>
#include <QFileInfo>
#include <QPointer>
#include <QWidget>

DatabaseImport::DatabaseImport(QWidget *window) : QObject(window), m_window(window) {}

void DatabaseImport::run(Collection *collection, bool isShell)
{
    // It may be closed while a dialog is open, for the loss of its file.
    const QPointer<Collection> target = collection;
    if (!target)
        return;
    const QString path = FileDialogs::openFile(m_window, isShell ? tr("Import Shell") : tr("Import"),
                                               WindowSettings::lastDatabaseDir(QDir::homePath()),
                                               isShell ? Constants::shellFilter : Constants::databaseFilter);
    if (path.isEmpty())
        return;
    const QFileInfo file(path);
    if (!file.isFile()) {
        Messages::warning(m_window, isShell ? tr("Import Shell") : tr("Import"),
                          tr("\"%1\" is no file, or is gone. Nothing was imported.").arg(file.fileName()));
        return;
    }
    WindowSettings::setLastDatabaseDir(file.absolutePath());
    choose(target, file.absoluteFilePath(), isShell);
}

void DatabaseImport::runShell(Collection *collection, const QString &path)
{
    if (!collection || collection->dbType() != Constants::localDatabase || collection->isReadOnly())
        Messages::information(m_window, tr("Import Shell"),
                              tr("A shell is imported into a database. Open a local database that may be "
                                 "changed, and choose Import, Shell."));
    else
        choose(collection, QFileInfo(path).absoluteFilePath(), true);
}

void DatabaseImport::choose(Collection *collection, const QString &path, bool isShell)
{
    const QPointer<Collection> target = collection;
    DatabaseContentsSelector selector(path, isShell, m_window);
    if (selector.exec() == QDialog::Accepted && target)
        target->mainViewController()->importDatabase(path, isShell, selector.options());
}

void DatabaseImport::showNotImported(const QList<ShellFile> &files)
{
    if (files.isEmpty())
        return;
    auto *notification = new ShellImportNotification(files, m_window);
    notification->setAttribute(Qt::WA_DeleteOnClose);
    notification->show();
}
