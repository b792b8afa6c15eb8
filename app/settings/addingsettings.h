#pragma once

#include <QString>

/** Settings of adding files. Each call reads or writes the store by itself; reading is safe on any thread. */
namespace AddingSettings {
bool duplicateManagementEnabled();
bool listDuplicates();
bool checkForNameDuplicates();

bool autoTagging();
bool createNodes();
bool autoTagRecursionLimitSet();
/** The deepest folder level, counted from the dropped folder as 1, whose name becomes a tag. */
int autoTagRecursionLimit();

/** True: added files stay where they are; false: their contents are copied into the database. */
bool linkToFiles();
void setLinkToFiles(bool link);

QString lastFileAddDir(const QString &defaultDir);
void setLastFileAddDir(const QString &dir);
} // namespace AddingSettings
