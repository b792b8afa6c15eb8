#pragma once

#include <QByteArray>
#include <QImage>
#include <QSize>

class QIODevice;
class QString;

/**
 * Reads a picture file for a small copy of it: upright, at a reduced size where its format can do that
 * without a visible difference, and not at all when it would unpack to more than half a gigabyte or so,
 * whatever the size of the file. Any thread.
 */
class PictureReader
{
public:
    /** The copy is to fit into a square of this edge, in pixels. */
    explicit PictureReader(int edge) : m_edge(edge) {}

    /** Null for what is no picture, broken, or too large. */
    QImage read(const QString &path);
    /** The whole picture, upright; null also for one that takes more bytes than these in memory. */
    static QImage readWhole(const QByteArray &bytes, qint64 mostBytes);
    /** Of the whole picture, upright. */
    QSize fullSize() const { return m_fullSize; }
    /** The size of the copy, to the nearest pixel; small pictures grow. */
    static QSize fitted(const QSize &size, int edge);

private:
    /** Line by line: what is read at a reduced size never lies in memory as a whole. */
    QImage decode(QIODevice &device, const QByteArray &format, bool isLineByLine);
    QSize reducedSize(const QSize &size, const QByteArray &format) const;

    int m_edge;
    QSize m_fullSize;
};
