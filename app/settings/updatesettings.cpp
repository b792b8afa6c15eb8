#include "app/settings/updatesettings.h"

#include "app/settings/preferencekeys.h"
#include "app/settings/settingvalues.h"

namespace UpdateSettings {

bool checkForUpdates()
{
    return SettingValues::flag(PreferenceKeys::checkForUpdates, false);
}

bool autoUpdate()
{
    return SettingValues::flag(PreferenceKeys::autoUpdate, false);
}

} // namespace UpdateSettings
