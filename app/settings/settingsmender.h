#pragma once

/**
 * Takes out of the user's store what ends its reading: a damaged list can tell any length, and the whole
 * section, and each later write, fails with it. What no single line explains puts the store aside, under its
 * name with ".damaged". Costs nothing where all can be read.
 */
namespace SettingsMender {
void run();
} // namespace SettingsMender
