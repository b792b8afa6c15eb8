#include "app/settings/viewsettings.h"

#include "app/settings/preferencekeys.h"
#include "app/settings/settingvalues.h"

namespace ViewSettings {

unsigned int newFilesTimeout()
{
    constexpr int mostMinutes = std::numeric_limits<int>::max() / 60;
    return uint(SettingValues::number(PreferenceKeys::newFilesTimeout, 5, 0, mostMinutes)) * 60;
}

int thumbnailCacheSize()
{
    // 64 KiB each, where so many have been looked at.
    constexpr int mostThumbnails = 100000;
    return qBound(1, SettingValues::number(PreferenceKeys::thumbnailCacheSize, 400), mostThumbnails);
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
