#pragma once

#include <Qt>

/** The roles of the table of tags beyond Qt's own, the same in every proxy and view above it. */
namespace TagRoles {
enum Role : int { TagId = Qt::UserRole + 1, MarkedTagIds, Groups, FileCount };
} // namespace TagRoles

/** The roles of the list of tag groups; they answer in any column. */
namespace GroupRoles {
enum Role : int { Value = Qt::UserRole + 1, GroupId };
} // namespace GroupRoles
