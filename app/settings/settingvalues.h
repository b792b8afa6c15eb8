#pragma once

#include <QString>
#include <QVariant>

#include <limits>

/**
 * Reads settings by their type: a stored value of another type, or one out of its bounds, counts as
 * none. Each call reads the store by itself; safe on any thread.
 */
namespace SettingValues {
/** A setting of any type. One whose reading fails leaves the store (SettingsMender). */
QVariant any(const QString &key, const QVariant &fallback = QVariant());
bool flag(const QString &key, bool fallback);
int number(const QString &key, int fallback, int lowest = 0, int highest = std::numeric_limits<int>::max());
/** One that a control has bounds for, brought within them. */
int bounded(const QString &key, int fallback, int lowest, int highest);
QString text(const QString &key, const QString &fallback);
/** Each write rewrites the store and waits for the disk, so an equal value is left alone. */
void store(const QString &key, const QVariant &value);
} // namespace SettingValues
