#include "app/settings/addingsettings.h"

#include "app/settings/settingvalues.h"

#include <QSettings>

namespace {

const QString linkToFilesKey = QStringLiteral("MainWindow/linkToFiles");
const QString lastFileAddDirKey = QStringLiteral("MainWindow/lastFileAddDir");

bool flag(const char *key, bool defaultValue)
{
    return SettingValues::flag(QLatin1String(key), defaultValue);
}

} // namespace

namespace AddingSettings {

bool duplicateManagementEnabled()
{
    return flag("PreferencesDialog/duplicateManagementEnabled", true);
}

bool listDuplicates()
{
    return flag("PreferencesDialog/listDuplicates", true);
}

bool checkForNameDuplicates()
{
    return flag("PreferencesDialog/checkForNameDuplicates", false);
}

bool autoTagging()
{
    return flag("PreferencesDialog/autoTagging", true);
}

bool createNodes()
{
    return flag("PreferencesDialog/createNodes", true);
}

bool autoTagRecursionLimitSet()
{
    return flag("PreferencesDialog/autoTagRecursionLimitSet", true);
}

int autoTagRecursionLimit()
{
    return SettingValues::number(QStringLiteral("PreferencesDialog/autoTagRecursionLimit"), 10000);
}

bool linkToFiles()
{
    return SettingValues::flag(linkToFilesKey, true);
}

void setLinkToFiles(bool link)
{
    QSettings().setValue(linkToFilesKey, link);
}

QString lastFileAddDir(const QString &defaultDir)
{
    return SettingValues::text(lastFileAddDirKey, defaultDir);
}

void setLastFileAddDir(const QString &dir)
{
    QSettings().setValue(lastFileAddDirKey, dir);
}

} // namespace AddingSettings
