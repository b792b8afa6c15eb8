// Part of programs that do not read pictures themselves: names the one beside them that does.

#include "fileops/pictures/picturechild.h"
#include "fileops/pictures/picturedecoder.h"

namespace {
const bool isNamed = [] {
    PictureDecoder::setProgram(VORNA_PICTURE_PROGRAM, PictureChild::argument);
    return true;
}();
} // namespace
