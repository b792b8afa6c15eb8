#include "app/settings/exchangesettings.h"

#include "app/settings/settingvalues.h"

namespace {

const QString descriptionsKey = QStringLiteral("DCS/descriptions");

QString keyOf(ExchangeSettings::Part part)
{
    using Part = ExchangeSettings::Part;
    switch (part) {
    case Part::Files:
        return QStringLiteral("DCS/files");
    case Part::Tags:
        return QStringLiteral("DCS/tags");
    case Part::BrowsingNodes:
        return QStringLiteral("DCS/tbn");
    case Part::TagRelationships:
        return QStringLiteral("DCS/tr");
    case Part::FileTags:
        return QStringLiteral("DCS/tf");
    case Part::TagGroups:
        return QStringLiteral("DCS/tg");
    }
    return {};
}

} // namespace

namespace ExchangeSettings {

bool isWanted(Part part)
{
    return SettingValues::flag(keyOf(part), true);
}

void setWanted(Part part, bool isWanted)
{
    SettingValues::store(keyOf(part), isWanted);
}

DescriptionMerge descriptionMerge()
{
    return DescriptionMerge(
        SettingValues::number(descriptionsKey, AppendDescriptions, LeaveDescriptions, ReplaceDescriptions));
}

void setDescriptionMerge(DescriptionMerge merge)
{
    SettingValues::store(descriptionsKey, int(merge));
}

} // namespace ExchangeSettings
