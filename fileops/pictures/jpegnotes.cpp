#include "fileops/pictures/jpegnotes.h"

#include <QVector>
#include <QtEndian>

namespace {
constexpr char notesMarker = '\xe1';      // APP1: Exif and XMP
constexpr char extensionsMarker = '\xe2'; // APP2: further pictures, among others
constexpr char titlesMarker = '\xed';     // APP13: IPTC
constexpr char firstMarker = '\xe0';      // APP0: JFIF

struct Segment
{
    char marker;
    int start; ///< of its 0xff
    int end;
};

/** The segments before the picture itself. */
QVector<Segment> segmentsOf(const QByteArray &jpeg)
{
    constexpr char scanMarker = '\xda';
    constexpr int headLength = 4; // 0xff, marker, two bytes of length, which count themselves
    QVector<Segment> segments;
    if (!jpeg.startsWith("\xff\xd8"))
        return segments;
    for (int at = 2; at + headLength <= jpeg.size() && jpeg.at(at) == '\xff';) {
        const char marker = jpeg.at(at + 1);
        const int end = at + 2 + qFromBigEndian<quint16>(jpeg.constData() + at + 2);
        if (marker == scanMarker || end < at + headLength || end > jpeg.size())
            break;
        segments.append({marker, at, end});
        at = end;
    }
    return segments;
}

/** The directories of numbers in an Exif segment; places count from its own start. */
class ExifDirectory
{
public:
    explicit ExifDirectory(QByteArray &bytes) : m_bytes(bytes), m_isLittle(bytes.startsWith("II")) {}

    bool setUpright(const QSize &size)
    {
        constexpr quint32 firstDirectoryAt = 4;
        quint32 first = 0;
        return read(firstDirectoryAt, first) && patch(first, size, true);
    }

private:
    enum Tag : quint16 {
        WidthTag = 0x100,
        HeightTag = 0x101,
        OrientationTag = 0x112,
        SubDirectoryTag = 0x8769,
        PixelWidthTag = 0xa002,
        PixelHeightTag = 0xa003
    };

    bool patch(quint32 directory, const QSize &size, bool isFirst)
    {
        constexpr int entryLength = 12;
        quint16 count = 0;
        if (!read(directory, count))
            return false;
        qint64 at = directory + 2;
        for (int i = 0; i < count; ++i, at += entryLength) {
            if (!patchEntry(at, size, isFirst))
                return false;
        }
        // What follows the first directory describes the small picture.
        return !isFirst || write<quint32>(at, 0);
    }

    bool patchEntry(qint64 at, const QSize &size, bool isFirst)
    {
        constexpr int valueAt = 8;
        quint16 tag = 0;
        quint32 value = 0;
        if (!read(at, tag) || !read(at + valueAt, value))
            return false;
        switch (tag) {
        case OrientationTag:
            return setNumber(at, 1);
        case WidthTag:
        case PixelWidthTag:
            return setNumber(at, size.width());
        case HeightTag:
        case PixelHeightTag:
            return setNumber(at, size.height());
        case SubDirectoryTag:
            return !isFirst || patch(value, size, false);
        default:
            return true;
        }
    }

    bool setNumber(qint64 at, int number)
    {
        constexpr quint16 shortType = 3;
        constexpr int valueAt = 8;
        quint16 type = 0;
        if (!read(at + 2, type))
            return false;
        return type == shortType ? write(at + valueAt, quint16(number))
                                 : write(at + valueAt, quint32(number));
    }

    template <class Number>
    bool has(qint64 at) const
    {
        return at >= 0 && at + qint64(sizeof(Number)) <= m_bytes.size();
    }
    template <class Number>
    bool read(qint64 at, Number &number) const
    {
        if (!has<Number>(at))
            return false;
        const char *place = m_bytes.constData() + at;
        number = m_isLittle ? qFromLittleEndian<Number>(place) : qFromBigEndian<Number>(place);
        return true;
    }
    template <class Number>
    bool write(qint64 at, Number number)
    {
        if (!has<Number>(at))
            return false;
        if (m_isLittle)
            qToLittleEndian(number, m_bytes.data() + at);
        else
            qToBigEndian(number, m_bytes.data() + at);
        return true;
    }

    QByteArray &m_bytes;
    bool m_isLittle;
};

/** XMP may tell of the orientation too, as tiff:Orientation="6" or between tags of that name. */
void setUprightInText(QByteArray &text)
{
    const QByteArray name("tiff:Orientation");
    for (int at = text.indexOf(name); at >= 0; at = text.indexOf(name, at + 1)) {
        for (int i = at + name.size(); i < qMin(at + name.size() + 3, text.size()); ++i) {
            if (text.at(i) >= '1' && text.at(i) <= '8')
                text[i] = '1';
        }
    }
}

/** A segment as it goes into the new file; empty when it does not. */
QByteArray adapted(QByteArray segment, const QSize &size)
{
    constexpr int contentsAt = 4;
    const QByteArray exifName("Exif\0\0", 6);
    const int directoriesAt = contentsAt + exifName.size();
    if (segment.mid(contentsAt, exifName.size()) != exifName) {
        setUprightInText(segment);
        return segment;
    }
    QByteArray directories = segment.mid(directoriesAt);
    return ExifDirectory(directories).setUpright(size) ? segment.left(directoriesAt) + directories
                                                       : QByteArray();
}
} // namespace

bool JpegNotes::hasFurtherPictures(const QByteArray &jpeg)
{
    constexpr int contentsAt = 4;
    const QVector<Segment> segments = segmentsOf(jpeg);
    for (const Segment &segment : segments) {
        if (segment.marker == extensionsMarker &&
            jpeg.mid(segment.start + contentsAt, 4) == QByteArray("MPF", 4))
            return true;
    }
    return false;
}

QByteArray JpegNotes::carriedOver(const QByteArray &oldJpeg, const QByteArray &newJpeg, const QSize &size)
{
    QByteArray notes;
    const QVector<Segment> oldSegments = segmentsOf(oldJpeg);
    for (const Segment &segment : oldSegments) {
        if (segment.marker == notesMarker || segment.marker == titlesMarker)
            notes += adapted(oldJpeg.mid(segment.start, segment.end - segment.start), size);
    }
    const QVector<Segment> newSegments = segmentsOf(newJpeg);
    if (notes.isEmpty() || newSegments.isEmpty())
        return newJpeg;
    const Segment &first = newSegments.first();
    const int place = first.marker == firstMarker ? first.end : first.start;
    return newJpeg.left(place) + notes + newJpeg.mid(place);
}
