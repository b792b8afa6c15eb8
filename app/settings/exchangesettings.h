#pragma once

/** What an import takes over, as it was chosen last. GUI thread; each call reads or writes the store by
 * itself. */
namespace ExchangeSettings {
enum class Part { Files, Tags, BrowsingNodes, TagRelationships, FileTags, TagGroups };
bool isWanted(Part part);
void setWanted(Part part, bool isWanted);

/** What becomes of the description of a file that both databases have. */
enum DescriptionMerge : int { LeaveDescriptions = 0, AppendDescriptions = 1, ReplaceDescriptions = 2 };
DescriptionMerge descriptionMerge();
void setDescriptionMerge(DescriptionMerge merge);
} // namespace ExchangeSettings
