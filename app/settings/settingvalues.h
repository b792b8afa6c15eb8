#pragma once

#include <QString>

#include <limits>

/**
 * Reads single settings by their type: a stored value of another type, or one out of its bounds, counts as
 * none. Each call reads the store by itself; safe on any thread.
 */
namespace SettingValues {
bool flag(const QString &key, bool fallback);
int number(const QString &key, int fallback, int lowest = 0, int highest = std::numeric_limits<int>::max());
QString text(const QString &key, const QString &fallback);
} // namespace SettingValues
