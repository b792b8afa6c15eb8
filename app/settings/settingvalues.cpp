#include "app/settings/settingvalues.h"

#include "app/settings/settingsmender.h"

#include <QDebug>
#include <QSettings>

#include <exception>

namespace SettingValues {

QVariant any(const QString &key, const QVariant &fallback)
{
    // The second attempt reads what the mender has left.
    for (int attempt = 0; attempt < 2; ++attempt) {
        try {
            return QSettings().value(key, fallback);
        } catch (const std::exception &failure) {
            qDebug() << "The setting" << key << "cannot be read:" << failure.what();
            SettingsMender::run();
        }
    }
    return fallback;
}

bool flag(const QString &key, bool fallback)
{
    // A file has them as texts, and QVariant takes any text for true.
    const QString stored = any(key).toString().toLower();
    if (stored == QLatin1String("true") || stored == QLatin1String("false"))
        return stored == QLatin1String("true");
    bool isNumber = false;
    const int value = stored.toInt(&isNumber);
    return isNumber ? value != 0 : fallback;
}

int number(const QString &key, int fallback, int lowest, int highest)
{
    bool isNumber = false;
    const qlonglong value = any(key).toLongLong(&isNumber);
    return isNumber && value >= lowest && value <= highest ? int(value) : fallback;
}

int bounded(const QString &key, int fallback, int lowest, int highest)
{
    return qBound(lowest, number(key, fallback), highest);
}

QString text(const QString &key, const QString &fallback)
{
    // An INI file gives a text with a comma as a list, which is none that this program wrote.
    const QVariant stored = any(key);
    return stored.type() == QVariant::String ? stored.toString() : fallback;
}

void store(const QString &key, const QVariant &value)
{
    QSettings settings;
    if (!settings.contains(key) || any(key) != value)
        settings.setValue(key, value);
}

} // namespace SettingValues
