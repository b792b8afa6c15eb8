#include "fileops/svgtext.h"

#include <QBuffer>
#include <QHash>
#include <QImageReader>
#include <QStringList>
#include <QVector>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <zlib.h>

namespace {
constexpr int maxText = 8 * 1024 * 1024;
constexpr qint64 maxElements = 200000;
constexpr qint64 maxEmbeddedPixels = 16LL * 1000 * 1000;
constexpr int maxDepth = 500;

/** Empty when it is broken or longer than a text may be. */
QByteArray unpacked(const QByteArray &packed)
{
    constexpr int anyHeader = 32 + MAX_WBITS;
    QByteArray text(maxText + 1, Qt::Uninitialized);
    z_stream stream = {};
    if (inflateInit2(&stream, anyHeader) != Z_OK)
        return QByteArray();
    stream.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(packed.constData()));
    stream.avail_in = static_cast<uInt>(packed.size());
    stream.next_out = reinterpret_cast<Bytef *>(text.data());
    stream.avail_out = static_cast<uInt>(text.size());
    const int result = inflate(&stream, Z_FINISH);
    text.truncate(static_cast<int>(stream.total_out));
    inflateEnd(&stream);
    return result == Z_STREAM_END && text.size() <= maxText ? text : QByteArray();
}

/** Copies a text and counts what drawing it will draw: a thing that is used is drawn once more each time. */
class SvgCopy
{
public:
    QByteArray of(const QByteArray &text);

private:
    /** An element that can be used, or the whole: how many elements it holds, and what it uses. */
    struct Part
    {
        qint64 elements = 0;
        QStringList used;
    };

    bool start(const QXmlStreamReader &reader);
    void end();
    bool mayStay(const QXmlStreamReader &reader);
    qint64 drawn(int part, int depth) const;

    QVector<Part> m_parts{Part()};
    QHash<QString, int> m_partsById;
    // The innermost named element around each open one.
    QVector<int> m_open{0};
    qint64 m_pixels = 0;
};

QString linkOf(const QXmlStreamReader &reader)
{
    for (const QXmlStreamAttribute &attribute : reader.attributes()) {
        if (attribute.name() == QLatin1String("href"))
            return attribute.value().toString().trimmed();
    }
    return QString();
}

QByteArray SvgCopy::of(const QByteArray &text)
{
    QByteArray copy;
    QXmlStreamReader reader(text);
    QXmlStreamWriter writer(&copy);
    writer.setAutoFormatting(false);
    while (!reader.atEnd()) {
        reader.readNext();
        if (reader.isStartElement() && reader.name() == QLatin1String("image") && !mayStay(reader)) {
            reader.skipCurrentElement();
            continue;
        }
        if (reader.isStartElement() && !start(reader))
            return QByteArray();
        if (reader.isEndElement())
            end();
        if (reader.tokenType() != QXmlStreamReader::Invalid)
            writer.writeCurrentToken(reader);
    }
    const bool isBearable = !reader.hasError() && m_pixels <= maxEmbeddedPixels;
    return isBearable && drawn(0, 0) <= maxElements ? copy : QByteArray();
}

bool SvgCopy::start(const QXmlStreamReader &reader)
{
    const QString id = reader.attributes().value(QLatin1String("id")).toString();
    int part = m_open.last();
    ++m_parts[part].elements;
    if (reader.name() == QLatin1String("use"))
        m_parts[part].used.append(linkOf(reader));
    if (!id.isEmpty()) {
        // Drawn where it stands and wherever it is used.
        const QString link = QLatin1Char('#') + id;
        m_parts[part].used.append(link);
        part = m_parts.size();
        m_parts.append(Part());
        m_partsById.insert(link, part);
    }
    m_open.append(part);
    return m_open.size() <= maxDepth && m_parts.first().elements <= maxElements;
}

void SvgCopy::end()
{
    if (m_open.size() > 1)
        m_open.removeLast();
}

/** A picture within the text stays, one in another file does not. */
bool SvgCopy::mayStay(const QXmlStreamReader &reader)
{
    const QString link = linkOf(reader);
    if (!link.startsWith(QLatin1String("data:")))
        return false;
    QByteArray bytes = QByteArray::fromBase64(link.mid(link.indexOf(QLatin1Char(',')) + 1).toLatin1());
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    const QByteArray format = QImageReader::imageFormat(&buffer);
    // Those that tell their size truly.
    if (format != "png" && format != "jpeg")
        return false;
    const QSize size = QImageReader(&buffer, format).size();
    m_pixels += static_cast<qint64>(size.width()) * size.height();
    return true;
}

/** More than bearable for parts that use each other in a circle, too. */
qint64 SvgCopy::drawn(int part, int depth) const
{
    qint64 sum = m_parts.at(part).elements;
    if (depth > maxDepth)
        return maxElements + 1;
    for (const QString &link : m_parts.at(part).used) {
        const int used = m_partsById.value(link);
        if (used > 0)
            sum += 1 + drawn(used, depth + 1);
        if (sum > maxElements)
            break;
    }
    return sum;
}
} // namespace

QByteArray SvgText::read(QIODevice &device)
{
    QByteArray text = device.read(maxText + 1);
    if (text.startsWith("\x1f\x8b"))
        text = unpacked(text);
    return text.isEmpty() || text.size() > maxText ? QByteArray() : SvgCopy().of(text);
}
