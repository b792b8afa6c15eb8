#pragma once

/** Settings of updates. GUI thread; each call reads the store by itself. */
namespace UpdateSettings {
/** False until the preferences have been accepted once: nothing is asked for that nobody agreed to. */
bool checkForUpdates();
/** True: a new version is downloaded without a question. */
bool autoUpdate();
} // namespace UpdateSettings
