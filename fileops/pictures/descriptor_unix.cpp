#include "fileops/pictures/descriptor.h"

#include <cerrno>
#include <unistd.h>

bool Descriptor::writeAll(int descriptor, const void *bytes, size_t length)
{
    const auto *place = static_cast<const char *>(bytes);
    while (length > 0) {
        const ssize_t count = ::write(descriptor, place, length);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return false;
        place += count;
        length -= static_cast<size_t>(count);
    }
    return true;
}
