#pragma once

/** Settings of what the views show. GUI thread; each call reads or writes the store by itself. */
namespace ViewSettings {
/** How long a file counts as recently added, in seconds; stored in minutes, 5 of them by default. */
unsigned int newFilesTimeout();

/** How many thumbnails stay in memory; never below 1. */
int thumbnailCacheSize();

enum NodeSorting { ManualSorting = 1, AlphabeticalSorting = 2 };
/** One of NodeSorting; any other value sorts nodes by their ids. */
int nodeSortingType();

/** True when a tag dropped on a node asks whether the new node goes above or below. */
bool asksForNodePlace();
} // namespace ViewSettings
