#include "app/settings/windowsettings.h"

#include "app/settings/constants.h"
#include "app/settings/dbspecifierlackingpassword.h"
#include "app/settings/settingvalues.h"

#include <QCryptographicHash>
#include <QSettings>

namespace {

const QString lastVersionUsedKey = QStringLiteral("lastVersionUsed");
const QString lastVersionDifferentKey = QStringLiteral("lastVersionDifferent");
const QString lastDatabaseDirKey = QStringLiteral("MainWindow/lastDBdir");
const QString lastExtractDirKey = QStringLiteral("MainWindow/lastExtractDir");
const QString recentDatabasesKey = QStringLiteral("MainWindow/recentDatabases_DBSpecifier2");
const QString showIconViewKey = QStringLiteral("MainWindow/showIconView");
const QString thumbnailSideKey = QStringLiteral("MainWindow/thumbnailSide");
const QString searchLineKey = QStringLiteral("MainWindow/fileSearchLineVisibility");
const QString fileCountsKey = QStringLiteral("MainWindow/fileCounts");
const QString editModeKey = QStringLiteral("MainWindow/editModeActivated");

const QString checksumSuffix = QStringLiteral("Checksum");

/** Tells a state as this version has stored it from a damaged one, which Qt takes at its word. */
QString checksumOf(const QString &key, const QByteArray &state)
{
    QCryptographicHash hash(QCryptographicHash::Sha1);
    hash.addData(key.toUtf8());
    // Another version may name its docks otherwise, for which a layout of old would leave some out of sight.
    hash.addData(QByteArray(qVersion()) + ' ' + Constants::programVersion.toUtf8() + ' ');
    hash.addData(state);
    return QString::fromLatin1(hash.result().toHex());
}

} // namespace

namespace WindowSettings {

QByteArray layout(const QString &key)
{
    // restoreState() trusts the lengths in its bytes, so that a damaged state could end the program.
    const QByteArray state = SettingValues::any(key).toByteArray();
    const QString checksum = SettingValues::text(key + checksumSuffix, QString());
    return checksum == checksumOf(key, state) ? state : QByteArray();
}

void setLayout(const QString &key, const QByteArray &state)
{
    SettingValues::store(key, state);
    SettingValues::store(key + checksumSuffix, checksumOf(key, state));
}

QString lastVersionUsed()
{
    return SettingValues::text(lastVersionUsedKey, QString());
}

bool noteVersion(const QString &version)
{
    const bool differs = lastVersionUsed() != version;
    SettingValues::store(lastVersionUsedKey, version);
    SettingValues::store(lastVersionDifferentKey, differs);
    return differs;
}

QString lastDatabaseDir(const QString &defaultDir)
{
    return SettingValues::text(lastDatabaseDirKey, defaultDir);
}

void setLastDatabaseDir(const QString &dir)
{
    SettingValues::store(lastDatabaseDirKey, dir);
}

QString lastExtractDir(const QString &defaultDir)
{
    return SettingValues::text(lastExtractDirKey, defaultDir);
}

void setLastExtractDir(const QString &dir)
{
    SettingValues::store(lastExtractDirKey, dir);
}

QQueue<DBDetails> recentDatabases()
{
    QQueue<DBDetails> databases;
    const auto stored = SettingValues::any(recentDatabasesKey).value<QQueue<DBSpecifierLackingPassword>>();
    // Entries of a kind that a later version has made are passed over.
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
    // Compared as lists, not as variants: those of a type of one's own never count as equal.
    if (SettingValues::any(recentDatabasesKey).value<QQueue<DBSpecifierLackingPassword>>() != stored)
        QSettings().setValue(recentDatabasesKey, QVariant::fromValue(stored));
}

bool showIconView()
{
    return SettingValues::flag(showIconViewKey, true);
}

void setShowIconView(bool show)
{
    SettingValues::store(showIconViewKey, show);
}

int thumbnailSide()
{
    return SettingValues::bounded(thumbnailSideKey, 128, smallestThumbnail, largestThumbnail);
}

void setThumbnailSide(int side)
{
    SettingValues::store(thumbnailSideKey, side);
}

bool isFileSearchLineVisible()
{
    return SettingValues::flag(searchLineKey, false);
}

void setFileSearchLineVisible(bool visible)
{
    SettingValues::store(searchLineKey, visible);
}

bool areFileCountsShown()
{
    return SettingValues::flag(fileCountsKey, true);
}

void setFileCountsShown(bool shown)
{
    SettingValues::store(fileCountsKey, shown);
}

bool isEditModeActivated()
{
    return SettingValues::flag(editModeKey, false);
}

void setEditModeActivated(bool activated)
{
    SettingValues::store(editModeKey, activated);
}

} // namespace WindowSettings
