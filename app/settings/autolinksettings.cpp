#include "app/settings/autolinksettings.h"

#include "app/settings/preferencekeys.h"
#include "app/settings/settingvalues.h"

namespace AutoLinkSettings {

bool autoLinkContinuously()
{
    return SettingValues::flag(PreferenceKeys::autoLinkContinuously, true);
}

bool autoLinkWhenSelected()
{
    return SettingValues::flag(PreferenceKeys::autoLinkWhenSelected, false);
}

bool checkAutoLinkWhenLaunched()
{
    return SettingValues::flag(PreferenceKeys::checkAutoLinkWhenLaunched, true);
}

bool autoLinkInBackGround()
{
    return SettingValues::flag(PreferenceKeys::autoLinkInBackGround, false);
}

} // namespace AutoLinkSettings
