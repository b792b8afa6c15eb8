#pragma once

/**
 * Settings of the folders that are linked to browsing nodes. Each call reads the store by itself; safe on any
 * thread.
 */
namespace AutoLinkSettings {
/** The folders are watched while their database is open. */
bool autoLinkContinuously();
/** A node that is selected takes in what is new in its folder. */
bool autoLinkWhenSelected();
/** All folders are looked at when a database opens. */
bool checkAutoLinkWhenLaunched();
/** No progress is shown. */
bool autoLinkInBackGround();
} // namespace AutoLinkSettings
