#pragma once

#include <QtGlobal>

class QByteArray;
class QString;

/**
 * The fingerprint by which contents are compared: 28 bits, not cryptographic, the same for a whole and for
 * its slices in turn. A plain value; stored databases depend on every detail of it.
 */
class DataChecksum
{
public:
    void reset() { m_state = 0; }
    void update(const char *bytes, qint64 length);
    /** The fingerprint so far; the next byte starts a new one. */
    quint32 take();

    /** Several streams in one go, at a multiple of the speed of one. */
    struct Stream
    {
        DataChecksum *checksum;
        const char *bytes;
        qint64 length;
    };
    /** Updates each checksum with its bytes; the checksums must be distinct. */
    static void updateAll(const Stream *streams, int count);

    /** Of bytes in memory; 0 for none. */
    static quint32 ofBytes(const QByteArray &bytes);
    /** Of the text in Latin-1, as hyperlinks are compared. */
    static quint32 ofHyperlink(const QString &text);

private:
    quint32 m_state = 0;
};
