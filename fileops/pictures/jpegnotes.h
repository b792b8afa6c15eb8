#pragma once

#include <QByteArray>
#include <QSize>

/** What a JPEG tells beside its picture: camera and place (Exif), titles (XMP, IPTC). Any thread. */
namespace JpegNotes {
/** True when further pictures stand behind the first one, as in stereo photographs. */
bool hasFurtherPictures(const QByteArray &jpeg);

/**
 * A newly written JPEG with the notes of the one whose place it takes. They say then that the picture stands
 * upright and has this size; their own small picture, which would lie on its side, is left out.
 */
QByteArray carriedOver(const QByteArray &oldJpeg, const QByteArray &newJpeg, const QSize &size);
} // namespace JpegNotes
