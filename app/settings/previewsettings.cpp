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
    return SettingValues::bounded(PreferenceKeys::slideshowIncrementTime, 7, 1, 3600);
}

} // namespace PreviewSettings
