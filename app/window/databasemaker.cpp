#include "app/window/databasemaker.h"

#include "app/messages/filedialogs.h"
#include "app/messages/messages.h"
#include "app/settings/constants.h"
#include "app/settings/windowsettings.h"
#include "app/window/replacedfile.h"
#include "core/controllers/collection.h"

#include <QDir>
#include <QFileInfo>

#include <memory>

DatabaseMaker::DatabaseMaker(std::function<bool(const DBDetails &)> open, std::function<QString()> openName,
                             QWidget *window)
    : QObject(window), m_open(std::move(open)), m_openName(std::move(openName)), m_window(window)
{
}

DatabaseMaker::Outcome DatabaseMaker::make()
{
    QString path =
        FileDialogs::saveFile(m_window, tr("Create New Database"),
                              WindowSettings::lastDatabaseDir(QDir::homePath()), Constants::databaseFilter);
    if (path.isEmpty())
        return NotMade;
    path = QFileInfo(path).absoluteFilePath();
    WindowSettings::setLastDatabaseDir(QFileInfo(path).absolutePath());
    // The dialog has asked about the name as typed, not about a longer one.
    const bool isAppended = !path.endsWith(Constants::databaseExtension);
    if (isAppended)
        path += Constants::databaseExtension;
    ReplacedFile replaced(path);
    if (!makeRoom(replaced, path, isAppended))
        return NotMade;
    const Outcome outcome = create(path);
    if (outcome == Made)
        replaced.discard();
    return outcome;
}

bool DatabaseMaker::isOpen(const QString &path) const
{
    const QString name = m_openName();
    return !name.isEmpty() && QFileInfo(name).canonicalFilePath() == QFileInfo(path).canonicalFilePath();
}

bool DatabaseMaker::makeRoom(ReplacedFile &replaced, const QString &path, bool mustAsk)
{
    const QFileInfo file(path);
    if (!file.exists())
        return true;
    const QString title = tr("Failed to create database");
    if (isOpen(path)) {
        Messages::warning(m_window, title, tr("Cannot remove currently open database."));
        return false;
    }
    if (mustAsk) {
        Messages::Box box;
        box.icon = QMessageBox::Warning;
        box.title = tr("Create New Database");
        box.text = tr("%1 already exists.\nDo you want to replace it?").arg(path);
        box.buttons = QMessageBox::Yes | QMessageBox::Cancel;
        box.defaultButton = QMessageBox::Cancel;
        if (Messages::run(m_window, box).button != QMessageBox::Yes)
            return false;
    }
    if (!file.isFile() || !replaced.setAside()) {
        Messages::warning(m_window, title, tr("Failed to remove existent database."));
        return false;
    }
    return true;
}

DatabaseMaker::Outcome DatabaseMaker::create(const QString &path)
{
    const std::unique_ptr<Collection> maker(
        makeCollection(Constants::localDatabase, QString(), path, QString(), QString(), 0));
    if (!maker->createDatabase()) {
        ReplacedFile::removeDatabase(path);
        Messages::warning(m_window, tr("Failed to create database"),
                          tr("A database could not be created at this place."));
        return NotMade;
    }
    if (m_open(DBDetails::local(path)))
        return Made;
    Messages::warning(m_window, tr("Failed to open database"), tr("Failed to open new database."));
    ReplacedFile::removeDatabase(path);
    return NotOpened;
}
