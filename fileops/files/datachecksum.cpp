#include "fileops/files/datachecksum.h"

#include <QByteArray>
#include <QString>

#include <array>

namespace {
constexpr quint32 resultMask = 0x0FFFFFFF;

const uchar *unsignedBytes(const char *bytes)
{
    return reinterpret_cast<const uchar *>(bytes);
}

/** The four top bits of a state, 23 places down. */
quint32 folded(quint32 state)
{
    return (state >> 23) & 0x1E0;
}

/** One byte after the other. The top bits stay in the state: the next shift drops them. */
quint32 hashBytes(quint32 state, const uchar *bytes, qint64 length)
{
    for (qint64 i = 0; i < length; ++i) {
        state = (state << 4) + bytes[i];
        state ^= folded(state);
    }
    return state & resultMask;
}

/**
 * Four bytes at a time. What is folded for them are the state's own upper bits, unless the additions carry
 * that far, so that it need not wait for the bytes before. A carry changes the bits above 27, which nothing
 * else touches, and can only count them up: when they are as they were, there was none.
 */
quint32 hashFast(quint32 state, const uchar *bytes, qint64 length)
{
    qint64 i = 0;
    for (; i + 4 <= length; i += 4) {
        const quint64 shifted = static_cast<quint64>(state) << 16;
        quint64 next = shifted + (static_cast<quint64>(bytes[i]) << 12);
        next ^= static_cast<quint64>((state >> 19) & 0x1E0) << 12;
        next += static_cast<quint64>(bytes[i + 1]) << 8;
        next ^= static_cast<quint64>((state >> 15) & 0x1E0) << 8;
        next += static_cast<quint64>(bytes[i + 2]) << 4;
        next ^= static_cast<quint64>((state >> 11) & 0x1E0) << 4;
        next += bytes[i + 3];
        next ^= (state >> 7) & 0x1E0;
        if (Q_LIKELY(((next ^ shifted) >> 28) == 0))
            state = static_cast<quint32>(next) & resultMask;
        else
            state = hashBytes(state, bytes + i, 4);
    }
    return hashBytes(state, bytes + i, length - i);
}

/** A stream on its way through hashSideBySide. */
struct Lane
{
    quint32 state;
    const uchar *bytes;
    qint64 length;
    DataChecksum *checksum;
};
using Lanes = std::array<Lane, 4>;

/** The same count of bytes of four streams: their chains of operations overlap in the processor. */
void hashSideBySide(Lanes &lanes, qint64 length)
{
    quint32 a = lanes[0].state;
    quint32 b = lanes[1].state;
    quint32 c = lanes[2].state;
    quint32 d = lanes[3].state;
    for (qint64 i = 0; i < length; ++i) {
        a = (a << 4) + lanes[0].bytes[i];
        b = (b << 4) + lanes[1].bytes[i];
        c = (c << 4) + lanes[2].bytes[i];
        d = (d << 4) + lanes[3].bytes[i];
        a ^= folded(a);
        b ^= folded(b);
        c ^= folded(c);
        d ^= folded(d);
    }
    const std::array<quint32, 4> states = {a, b, c, d};
    for (size_t i = 0; i < lanes.size(); ++i) {
        lanes[i].state = states[i] & resultMask;
        lanes[i].bytes += length;
        lanes[i].length -= length;
    }
}
} // namespace

void DataChecksum::update(const char *bytes, qint64 length)
{
    m_state = hashFast(m_state, unsignedBytes(bytes), length);
}

quint32 DataChecksum::take()
{
    const quint32 result = m_state;
    reset();
    return result;
}

void DataChecksum::updateAll(const Stream *streams, int count)
{
    Lanes lanes = {};
    int next = 0;
    const auto refill = [&](Lane &lane) {
        if (next == count)
            return false;
        const Stream &stream = streams[next++];
        lane = {stream.checksum->m_state, unsignedBytes(stream.bytes), stream.length, stream.checksum};
        return true;
    };

    bool areFull = true;
    for (Lane &lane : lanes)
        areFull = refill(lane) && areFull;
    while (areFull) {
        // As far as the shortest goes; whichever is done gives its lane to the next stream.
        qint64 common = lanes[0].length;
        for (const Lane &lane : lanes)
            common = qMin(common, lane.length);
        hashSideBySide(lanes, common);
        for (Lane &lane : lanes) {
            while (areFull && lane.length == 0) {
                lane.checksum->m_state = lane.state;
                lane.checksum = nullptr;
                areFull = refill(lane);
            }
        }
    }
    // Too few are left to fill the lanes, so each goes on alone, where taking more bytes at a time is faster.
    for (const Lane &lane : lanes) {
        if (lane.checksum)
            lane.checksum->m_state = hashFast(lane.state, lane.bytes, lane.length);
    }
}

quint32 DataChecksum::ofBytes(const QByteArray &bytes)
{
    DataChecksum checksum;
    checksum.update(bytes.constData(), bytes.size());
    return checksum.take();
}

quint32 DataChecksum::ofHyperlink(const QString &text)
{
    return ofBytes(text.toLatin1());
}
