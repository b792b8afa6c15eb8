#include "app/viewsettings.h"

#include <QSettings>

namespace ViewSettings {

unsigned int newFilesTimeout()
{
    bool ok = false;
    const uint minutes = QSettings().value(QStringLiteral("NewFiles/timeout"), 5).toUInt(&ok);
    return ok ? minutes * 60 : 300;
}

int thumbnailCacheSize()
{
    return qMax(1, QSettings().value(QStringLiteral("ThumbnailCache/thumbnailCacheSize"), 400).toInt());
}

int nodeSortingType()
{
    return QSettings().value(QStringLiteral("PreferencesDialog/nodeSortingType"), 1).toInt();
}

bool asksForNodePlace()
{
    return QSettings().value(QStringLiteral("PreferencesDialog/nodeCreationOptions"), false).toBool();
}

} // namespace ViewSettings
