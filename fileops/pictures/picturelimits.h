#pragma once

#include <QtGlobal>

/** The bounds of reading pictures that both ends keep to. */
namespace PictureLimit {
/** Of a picture in its whole size, which is kept beside the copy of four bytes a pixel that is shown. */
constexpr qint64 wholePixels = 160LL * 1000 * 1000;
constexpr qint64 wholeBytes = 4 * wholePixels;
/** Of a palette. */
constexpr int colours = 256;
/** Of texts and colour profile. */
constexpr int notesBytes = 16 * 1024 * 1024;
/** Of the memory that any use may take. */
constexpr qint64 mostBytes = 2LL * 1024 * 1024 * 1024;
} // namespace PictureLimit
