#include "app/settings/viewsettings.h"

#include "app/settings/settingvalues.h"

namespace ViewSettings {

unsigned int newFilesTimeout()
{
    constexpr int mostMinutes = std::numeric_limits<int>::max() / 60;
    return uint(SettingValues::number(QStringLiteral("NewFiles/timeout"), 5, 0, mostMinutes)) * 60;
}

int thumbnailCacheSize()
{
    // 64 KiB each.
    constexpr int mostThumbnails = 20000;
    return qMax(1, SettingValues::number(QStringLiteral("ThumbnailCache/thumbnailCacheSize"), 400, 0,
                                         mostThumbnails));
}

int nodeSortingType()
{
    return SettingValues::number(QStringLiteral("PreferencesDialog/nodeSortingType"), ManualSorting);
}

bool asksForNodePlace()
{
    return SettingValues::flag(QStringLiteral("PreferencesDialog/nodeCreationOptions"), false);
}

} // namespace ViewSettings
