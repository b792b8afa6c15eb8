#include "app/settings/trackingsettings.h"

#include "app/settings/preferencekeys.h"
#include "app/settings/settingvalues.h"

#include <QSettings>

namespace {

const QString lastDirKey = QStringLiteral("FileLocationDialog/lastDir");
} // namespace

bool TrackingSettings::adviseOfModifiedFiles()
{
    return SettingValues::flag(PreferenceKeys::adviseOfModifiedFiles, true);
}

void TrackingSettings::setAdviseOfModifiedFiles(bool advise)
{
    QSettings().setValue(PreferenceKeys::adviseOfModifiedFiles, advise);
}

QString TrackingSettings::lastLocationDir(const QString &defaultDir)
{
    // A folder that has gone is the caller's affair: a disk may only be unplugged.
    return SettingValues::text(lastDirKey, defaultDir);
}

void TrackingSettings::setLastLocationDir(const QString &dir)
{
    QSettings().setValue(lastDirKey, dir);
}
