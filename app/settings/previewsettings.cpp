#include "app/settings/previewsettings.h"

#include "app/settings/preferencekeys.h"
#include "app/settings/settingvalues.h"

namespace PreviewSettings {

bool autoSaveRotated()
{
    return SettingValues::flag(PreferenceKeys::autoSaveRotated, false);
}

bool keepPreviewOnTop()
{
    return SettingValues::flag(PreferenceKeys::keepPreviewOnTop, true);
}

int slideshowIncrementTime()
{
    // A timer counts milliseconds in an int.
    constexpr int mostSeconds = 86400;
    return SettingValues::number(PreferenceKeys::slideshowIncrementTime, 7, 1, mostSeconds);
}

} // namespace PreviewSettings
