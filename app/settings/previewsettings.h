#pragma once

/** Settings of the image previewer. GUI thread; each call reads the store by itself. */
namespace PreviewSettings {
/** True: a rotation is saved when the window moves on; false: the window offers to save it. */
bool autoSaveRotated();
bool keepPreviewOnTop();
/** How long the slide show rests on a picture, in seconds; never below 1. */
int slideshowIncrementTime();
} // namespace PreviewSettings
