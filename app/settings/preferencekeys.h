#pragma once

#include <QString>

/** The keys of what the user prefers: the dialog writes them, the settings of each topic read them. */
namespace PreferenceKeys {
const QString duplicateManagementEnabled = QStringLiteral("PreferencesDialog/duplicateManagementEnabled");
const QString listDuplicates = QStringLiteral("PreferencesDialog/listDuplicates");
const QString checkForNameDuplicates = QStringLiteral("PreferencesDialog/checkForNameDuplicates");
const QString adviseOfModifiedFiles = QStringLiteral("PreferencesDialog/adviseOfModifiedFiles");
const QString newFilesTimeout = QStringLiteral("NewFiles/timeout");
const QString thumbnailCacheSize = QStringLiteral("ThumbnailCache/thumbnailCacheSize");
const QString autoTagging = QStringLiteral("PreferencesDialog/autoTagging");
const QString createNodes = QStringLiteral("PreferencesDialog/createNodes");
const QString nodeCreationOptions = QStringLiteral("PreferencesDialog/nodeCreationOptions");
const QString autoTagRecursionLimit = QStringLiteral("PreferencesDialog/autoTagRecursionLimit");
const QString autoTagRecursionLimitSet = QStringLiteral("PreferencesDialog/autoTagRecursionLimitSet");
const QString checkForUpdates = QStringLiteral("PreferencesDialog/checkForUpdates");
const QString autoUpdate = QStringLiteral("PreferencesDialog/autoUpdate");
const QString autoSaveRotated = QStringLiteral("PreferencesDialog/autoSaveRotated");
const QString keepPreviewOnTop = QStringLiteral("PreferencesDialog/keepPreviewOnTop");
const QString slideshowIncrementTime = QStringLiteral("PreferencesDialog/slideshowIncrementTime");
const QString autoLinkContinuously = QStringLiteral("PreferencesDialog/autoLinkContinuously");
const QString autoLinkWhenSelected = QStringLiteral("PreferencesDialog/autoLinkWhenSelected");
const QString checkAutoLinkWhenLaunched = QStringLiteral("PreferencesDialog/checkAutoLinkWhenLaunched");
const QString autoLinkInBackGround = QStringLiteral("PreferencesDialog/autoLinkInBackGround");
const QString nodeSortingType = QStringLiteral("PreferencesDialog/nodeSortingType");
} // namespace PreferenceKeys
