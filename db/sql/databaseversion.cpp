#include "db/sql/databaseversion.h"

#include <QRegularExpression>

#include <array>

namespace {
struct Numbers
{
    std::array<int, 3> places{};
    bool isValid = false;
};

/** The dots match any character, and the second number fills both lower places: old databases count on it. */
Numbers parsed(const QString &text)
{
    static const QRegularExpression pattern(QStringLiteral("(\\d+).(\\d+).(\\d+)"));
    const QRegularExpressionMatch match = pattern.match(text);
    if (!match.hasMatch())
        return {};
    bool isMajor = false;
    bool isMinor = false;
    const int major = match.captured(1).toInt(&isMajor);
    const int minor = match.captured(2).toInt(&isMinor);
    return {{major, minor, minor}, isMajor && isMinor};
}

bool isAtLeast(const QString &left, const QString &right, bool &isValid)
{
    const Numbers a = parsed(left);
    const Numbers b = parsed(right);
    isValid = a.isValid && b.isValid;
    return isValid && a.places >= b.places;
}

bool isEqual(const QString &left, const QString &right, bool &isValid)
{
    const Numbers a = parsed(left);
    const Numbers b = parsed(right);
    isValid = a.isValid && b.isValid;
    return isValid && a.places == b.places;
}

int searched(const QString &text)
{
    bool isValid = true;
    for (int i = 0; i < DataBaseVersions::count; ++i) {
        const bool isStop = isAtLeast(DataBaseVersions::name(i), text, isValid);
        if (!isValid)
            return UnknownVersion;
        if (isStop)
            return isEqual(DataBaseVersions::name(i), text, isValid) ? i : qMax(0, i - 1);
    }
    return DataBaseVersions::current;
}
} // namespace

namespace DataBaseVersions {
QString name(int version)
{
    static const std::array<QString, count> names{
        QStringLiteral("0.0.0"), QStringLiteral("0.5.3"), QStringLiteral("2.0.3"), QStringLiteral("2.0.6"),
        QStringLiteral("2.0.7"), QStringLiteral("2.0.8"), QStringLiteral("3.2.0"), QStringLiteral("4.1.0")};
    return version > 0 && version < count ? names.at(static_cast<size_t>(version)) : names.front();
}

int fromProgramText(const QString &text)
{
    for (int i = Version_0_5_3; i <= Version_2_0_7; ++i) {
        if (text == name(i))
            return i;
    }
    return text == QLatin1String("2.0.7a") ? int(Version_2_0_7) : searched(text);
}

int fromSchemaText(const QString &text)
{
    for (int i : {Version_2_0_8, Version_3_2_0, Version_4_1_0}) {
        if (text.contains(name(i)))
            return i;
    }
    return UnknownVersion;
}
} // namespace DataBaseVersions
