#pragma once

#include <QString>

/** Settings of external files that move or change. Each call reads or writes the store by itself. */
namespace TrackingSettings {
/** Whether a window tells of files that were edited or replaced. */
bool adviseOfModifiedFiles();
void setAdviseOfModifiedFiles(bool advise);

/** The folder that missing files were last looked for in. */
QString lastLocationDir(const QString &defaultDir);
void setLastLocationDir(const QString &dir);
} // namespace TrackingSettings
