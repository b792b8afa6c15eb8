#pragma once

#include <QByteArray>

class QIODevice;

/**
 * Reads an SVG picture, packed or not, so that drawing it is safe: pictures that lie in other files are taken
 * out, as their names may lead to pipes or other people's servers. Any thread.
 */
namespace SvgText {
/** Empty when it is broken, too long, draws too many things or holds a picture that is too large. */
QByteArray read(QIODevice &device);
} // namespace SvgText
