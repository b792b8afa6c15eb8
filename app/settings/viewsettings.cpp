#include "app/settings/viewsettings.h"

#include "app/settings/preferencekeys.h"
#include "app/settings/settingvalues.h"

namespace ViewSettings {

unsigned int newFilesTimeout()
{
    // Minutes in the store, seconds for the callers.
    return uint(SettingValues::bounded(PreferenceKeys::newFilesTimeout, 5, 1, 10000)) * 60;
}

int thumbnailCacheSize()
{
    // 64 KiB each, where so many have been looked at.
    return SettingValues::bounded(PreferenceKeys::thumbnailCacheSize, 400, 1, 100000);
}

int nodeSortingType()
{
    return SettingValues::number(PreferenceKeys::nodeSortingType, ManualSorting);
}

bool asksForNodePlace()
{
    return SettingValues::flag(PreferenceKeys::nodeCreationOptions, false);
}

} // namespace ViewSettings
