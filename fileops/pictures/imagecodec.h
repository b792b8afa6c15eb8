#pragma once

#include <QByteArray>
#include <QImage>

/** Pictures in their whole size, as bytes and as pixels. Bytes are read by another process. Any thread. */
namespace ImageCodec {
/** Bytes that are read of one picture at most. */
constexpr qint64 mostBytes = 512LL * 1024 * 1024;

/** The picture, turned upright; null for what cannot be read or would take too much memory. */
QImage decoded(const QByteArray &bytes);

/** True when the bytes hold more than one picture: frames, pages or sizes; or cannot be read. */
bool hasSeveralPictures(const QByteArray &bytes);

/**
 * The picture in a format named by the ending of a file; empty when that cannot be written here, or does not
 * give the picture back when it is read.
 */
QByteArray encoded(const QImage &picture, const QByteArray &format);

/** The same in the place of other bytes, whose notes stay; empty when those hold several pictures. */
QByteArray rewritten(const QByteArray &oldBytes, const QImage &picture, const QByteArray &format);

/**
 * The original turned as the picture is, with depth, resolution and texts that a picture loses on its way
 * over the screen. A picture that shows something else comes back with what can be given to it.
 */
QImage turnedLike(const QImage &original, const QImage &picture);
} // namespace ImageCodec
