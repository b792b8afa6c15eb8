#include "app/settings/addingsettings.h"

#include "app/settings/preferencekeys.h"
#include "app/settings/settingvalues.h"

#include <QSettings>

namespace {

const QString linkToFilesKey = QStringLiteral("MainWindow/linkToFiles");
const QString lastFileAddDirKey = QStringLiteral("MainWindow/lastFileAddDir");

} // namespace

namespace AddingSettings {

bool duplicateManagementEnabled()
{
    return SettingValues::flag(PreferenceKeys::duplicateManagementEnabled, true);
}

bool listDuplicates()
{
    return SettingValues::flag(PreferenceKeys::listDuplicates, true);
}

bool checkForNameDuplicates()
{
    return SettingValues::flag(PreferenceKeys::checkForNameDuplicates, false);
}

bool autoTagging()
{
    return SettingValues::flag(PreferenceKeys::autoTagging, true);
}

bool createNodes()
{
    return SettingValues::flag(PreferenceKeys::createNodes, true);
}

bool autoTagRecursionLimitSet()
{
    return SettingValues::flag(PreferenceKeys::autoTagRecursionLimitSet, true);
}

int autoTagRecursionLimit()
{
    // The bounds are those of the control in the preferences.
    return SettingValues::bounded(PreferenceKeys::autoTagRecursionLimit, 10000, 1, 10000);
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
