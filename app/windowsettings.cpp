#include "app/windowsettings.h"

#include "app/dbspecifierlackingpassword.h"

#include <QSettings>

namespace {

const QString lastVersionUsedKey = QStringLiteral("lastVersionUsed");
const QString lastVersionDifferentKey = QStringLiteral("lastVersionDifferent");
const QString lastDatabaseDirKey = QStringLiteral("MainWindow/lastDBdir");
const QString lastExtractDirKey = QStringLiteral("MainWindow/lastExtractDir");
const QString recentDatabasesKey = QStringLiteral("MainWindow/recentDatabases_DBSpecifier2");
const QString showIconViewKey = QStringLiteral("MainWindow/showIconView");
const QString searchLineKey = QStringLiteral("MainWindow/fileSearchLineVisibility");
const QString editModeKey = QStringLiteral("MainWindow/editModeActivated");

/** Each write rewrites the store and waits for the disk, so an equal value is left alone. */
void store(const QString &key, const QVariant &value)
{
    QSettings settings;
    if (!settings.contains(key) || settings.value(key) != value)
        settings.setValue(key, value);
}

} // namespace

namespace WindowSettings {

QByteArray layout(const QString &key)
{
    return QSettings().value(key).toByteArray();
}

void setLayout(const QString &key, const QByteArray &state)
{
    store(key, state);
}

QString lastVersionUsed()
{
    return QSettings().value(lastVersionUsedKey, QString()).toString();
}

bool noteVersion(const QString &version)
{
    const bool differs = lastVersionUsed() != version;
    store(lastVersionUsedKey, version);
    store(lastVersionDifferentKey, differs);
    return differs;
}

QString lastDatabaseDir(const QString &defaultDir)
{
    return QSettings().value(lastDatabaseDirKey, defaultDir).toString();
}

void setLastDatabaseDir(const QString &dir)
{
    store(lastDatabaseDirKey, dir);
}

QString lastExtractDir(const QString &defaultDir)
{
    return QSettings().value(lastExtractDirKey, defaultDir).toString();
}

void setLastExtractDir(const QString &dir)
{
    store(lastExtractDirKey, dir);
}

QQueue<DBDetails> recentDatabases()
{
    QQueue<DBDetails> databases;
    const auto stored = QSettings().value(recentDatabasesKey).value<QQueue<DBSpecifierLackingPassword>>();
    for (const DBSpecifierLackingPassword &specifier : stored) {
        if (!specifier.isNull())
            databases.enqueue(specifier.toDetails());
    }
    return databases;
}

void setRecentDatabases(const QQueue<DBDetails> &databases)
{
    QQueue<DBSpecifierLackingPassword> stored;
    for (const DBDetails &details : databases) {
        const auto specifier = DBSpecifierLackingPassword::fromDetails(details);
        if (!specifier.isNull())
            stored.enqueue(specifier);
    }
    if (QSettings().value(recentDatabasesKey).value<QQueue<DBSpecifierLackingPassword>>() != stored)
        QSettings().setValue(recentDatabasesKey, QVariant::fromValue(stored));
}

bool showIconView()
{
    return QSettings().value(showIconViewKey, true).toBool();
}

void setShowIconView(bool show)
{
    store(showIconViewKey, show);
}

bool isFileSearchLineVisible()
{
    return QSettings().value(searchLineKey, false).toBool();
}

void setFileSearchLineVisible(bool visible)
{
    store(searchLineKey, visible);
}

bool isEditModeActivated()
{
    return QSettings().value(editModeKey, false).toBool();
}

void setEditModeActivated(bool activated)
{
    store(editModeKey, activated);
}

} // namespace WindowSettings
