#pragma once

#include "app/settings/exchangesettings.h"

/** What an import takes over from its source. */
struct ImportOptions
{
    bool files = false;
    bool tags = false;
    bool browsingNodes = false;
    bool tagRelationships = false;
    bool fileTags = false;
    bool tagGroups = false;
    ExchangeSettings::DescriptionMerge descriptions = ExchangeSettings::LeaveDescriptions;
};
