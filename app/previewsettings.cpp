#include "app/previewsettings.h"

#include <QSettings>

namespace PreviewSettings {

bool autoSaveRotated()
{
    return QSettings().value(QStringLiteral("PreferencesDialog/autoSaveRotated"), false).toBool();
}

bool keepPreviewOnTop()
{
    return QSettings().value(QStringLiteral("PreferencesDialog/keepPreviewOnTop"), true).toBool();
}

int slideshowIncrementTime()
{
    // A timer counts milliseconds in an int.
    constexpr int mostSeconds = 86400;
    const int seconds =
        QSettings().value(QStringLiteral("PreferencesDialog/slideshowIncrementTime"), 7).toInt();
    return qBound(1, seconds, mostSeconds);
}

} // namespace PreviewSettings
