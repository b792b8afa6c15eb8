#include "app/settings/settingvalues.h"

#include <QSettings>

namespace SettingValues {

bool flag(const QString &key, bool fallback)
{
    // A file has them as texts, and QVariant takes any text for true.
    const QString stored = QSettings().value(key).toString().toLower();
    if (stored == QLatin1String("true") || stored == QLatin1String("false"))
        return stored == QLatin1String("true");
    bool isNumber = false;
    const int value = stored.toInt(&isNumber);
    return isNumber ? value != 0 : fallback;
}

int number(const QString &key, int fallback, int lowest, int highest)
{
    bool isNumber = false;
    const qlonglong value = QSettings().value(key).toLongLong(&isNumber);
    return isNumber && value >= lowest && value <= highest ? int(value) : fallback;
}

QString text(const QString &key, const QString &fallback)
{
    const QVariant stored = QSettings().value(key);
    return stored.type() == QVariant::String ? stored.toString() : fallback;
}

} // namespace SettingValues
