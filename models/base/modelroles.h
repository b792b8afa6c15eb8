#pragma once

#include <Qt>

/** The roles of the table of files beyond Qt's own, the same in the filter and the sorter above it. */
namespace ContentsRoles {
enum Role : int {
    Name = Qt::UserRole + 1,
    FileId,
    Description,
    Tags,
    AdditionDate,
    ModificationDate,
    Size,
    Path,
    RelPath,
    IdCode,
    Internal
};
} // namespace ContentsRoles
