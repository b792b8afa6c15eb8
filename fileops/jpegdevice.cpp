#include "fileops/jpegdevice.h"

#include <QtEndian>

namespace {
constexpr char markerStart = '\xff';
constexpr quint8 firstFrame = 0xc0;
constexpr quint8 lastFrame = 0xcf;
constexpr quint8 huffmanTables = 0xc4;
constexpr quint8 extension = 0xc8;
constexpr quint8 arithmeticTables = 0xcc;
constexpr quint8 scan = 0xda;
// Behind the length of a segment: in that of a frame depth, height and width come first.
constexpr int componentsOfFrame = 5;

bool isFrame(quint8 marker)
{
    return marker >= firstFrame && marker <= lastFrame && marker != huffmanTables && marker != extension &&
           marker != arithmeticTables;
}

/** Frames of one scan unless it is split: baseline, extended, and the latter in arithmetic coding. */
bool isSequentialFrame(quint8 frame)
{
    return frame == 0xc0 || frame == 0xc1 || frame == 0xc9;
}

/** The marker of the next segment; 0 at the end. Its length comes next. */
quint8 nextMarker(QIODevice &file)
{
    char byte = 0;
    if (!file.getChar(&byte) || byte != markerStart)
        return 0;
    // Any number of these may stand before a marker.
    while (byte == markerStart) {
        if (!file.getChar(&byte))
            return 0;
    }
    return static_cast<quint8>(byte);
}
} // namespace

JpegDevice::JpegDevice(QIODevice &file) : m_file(file)
{
    // A buffer of its own would read on ahead of the decoder.
    open(QIODevice::ReadOnly | QIODevice::Unbuffered);
}

bool JpegDevice::isOneScan()
{
    constexpr int start = 2;
    quint8 frame = 0;
    quint8 components = 0;
    bool isOne = false;
    for (qint64 at = start; m_file.seek(at);) {
        const quint8 marker = nextMarker(m_file);
        const QByteArray head = m_file.peek(2 + componentsOfFrame + 1);
        if (marker == 0 || head.size() <= 2 + componentsOfFrame)
            break;
        if (isFrame(marker)) {
            frame = marker;
            components = static_cast<quint8>(head.at(2 + componentsOfFrame));
        } else if (marker == scan) {
            isOne = isSequentialFrame(frame) && static_cast<quint8>(head.at(2)) == components;
            break;
        }
        at = m_file.pos() + qFromBigEndian<quint16>(head.constData());
    }
    m_file.seek(0);
    return isOne;
}

bool JpegDevice::seek(qint64 position)
{
    return QIODevice::seek(position) && m_file.seek(position);
}

qint64 JpegDevice::readData(char *data, qint64 maxSize)
{
    const qint64 length = m_file.read(data, maxSize);
    m_isCut = m_isCut || (length <= 0 && maxSize > 0);
    return length;
}
