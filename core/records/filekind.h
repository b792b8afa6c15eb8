#pragma once

#include <QtGlobal>

/** Where the contents of a file are: the values of File::internal() and of its column. */
namespace FileKind {
constexpr qint32 external = 0;  ///< on the disk
constexpr qint32 internal = 1;  ///< in the database
constexpr qint32 hyperlink = 2; ///< nowhere, its name is an address
} // namespace FileKind
