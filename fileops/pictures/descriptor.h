#pragma once

#include <cstddef>

/** What both ends of a channel do with descriptors of the system. Any thread. */
namespace Descriptor {
/** Goes on until all is written, or nothing more can be. */
bool writeAll(int descriptor, const void *bytes, size_t length);
} // namespace Descriptor
