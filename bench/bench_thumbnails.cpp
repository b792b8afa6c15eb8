// Thumbnails of large photographs, made by one thread, beside the least that reading them takes: libjpeg's
// own decoding at an eighth of the size, which looks at every byte of the file.

#include "bench/measure.h"
#include "fileops/pictures/thumbnailcanvas.h"
#include "fileops/thumbnailmaker.h"

#include <QCommandLineParser>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QRandomGenerator>
#include <QTemporaryDir>

#include <cmath>
#include <cstdio>
#include <vector>

#include <jpeglib.h>

namespace {
constexpr int pictureCount = 8;
constexpr int batch = 10;
const QSize pictureSize(4000, 3000);

// Keeps the optimizer from leaving work out.
volatile qint64 sink = 0;

/** Soft light with shapes and the grain of a sensor: about as many bytes a pixel as a camera's picture. */
QImage photograph(quint32 seed)
{
    QRandomGenerator random(seed);
    QImage small(pictureSize / 4, QImage::Format_RGB32);
    small.fill(QColor::fromHsv(int(random.bounded(360)), 90, 150));
    QPainter painter(&small);
    painter.setRenderHint(QPainter::Antialiasing);
    for (int i = 0; i < 400; ++i) {
        const QPointF centre(random.bounded(small.width()), random.bounded(small.height()));
        QRadialGradient light(centre, 20 + random.bounded(200));
        light.setColorAt(0, QColor::fromHsv(int(random.bounded(360)), int(random.bounded(200)), 220, 160));
        light.setColorAt(1, Qt::transparent);
        painter.fillRect(small.rect(), light);
    }
    painter.end();
    QImage picture = small.scaled(pictureSize, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    for (int y = 0; y < picture.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(picture.scanLine(y));
        for (int x = 0; x < picture.width(); ++x) {
            const int grain = int(random.bounded(17)) - 8;
            line[x] = qRgb(qBound(0, qRed(line[x]) + grain, 255), qBound(0, qGreen(line[x]) + grain, 255),
                           qBound(0, qBlue(line[x]) + grain, 255));
        }
    }
    return picture;
}

void decodeAnEighth(const QString &path)
{
    FILE *file = std::fopen(path.toLocal8Bit().constData(), "rb");
    if (!file)
        qFatal("a picture is gone");
    jpeg_decompress_struct decoder = {};
    jpeg_error_mgr errors = {};
    decoder.err = jpeg_std_error(&errors);
    jpeg_create_decompress(&decoder);
    jpeg_stdio_src(&decoder, file);
    jpeg_read_header(&decoder, TRUE);
    decoder.scale_num = 1;
    decoder.scale_denom = 8;
    jpeg_start_decompress(&decoder);
    std::vector<JSAMPLE> line(decoder.output_width * static_cast<size_t>(decoder.output_components));
    JSAMPROW row = line.data();
    while (decoder.output_scanline < decoder.output_height)
        jpeg_read_scanlines(&decoder, &row, 1);
    sink = sink + line.front();
    jpeg_finish_decompress(&decoder);
    jpeg_destroy_decompress(&decoder);
    std::fclose(file);
}

void makeThumbnail(const QString &path)
{
    const QByteArray png = ThumbnailMaker::encoded(ThumbnailMaker::thumbnailOf(path));
    if (png.isEmpty())
        qFatal("no thumbnail of %s", qPrintable(path));
    sink = sink + png.size();
}

/** Of the shown channels, the largest distance to a thumbnail out of the whole picture. */
int difference(const QString &path)
{
    const QImage reduced = ThumbnailMaker::thumbnailOf(path);
    const QImage picture(path);
    const QImage whole = ThumbnailCanvas::with(picture, picture.size());
    int largest = 0;
    for (int y = 0; y < whole.height(); ++y) {
        for (int x = 0; x < whole.width(); ++x) {
            const QRgb one = reduced.pixel(x, y);
            const QRgb other = whole.pixel(x, y);
            largest =
                std::max({largest, std::abs(qRed(one) - qRed(other)), std::abs(qGreen(one) - qGreen(other)),
                          std::abs(qBlue(one) - qBlue(other)), std::abs(qAlpha(one) - qAlpha(other))});
        }
    }
    return largest;
}
} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    QCommandLineParser options;
    const QCommandLineOption countOption(QStringLiteral("count"), QStringLiteral("Thumbnails to make."),
                                         QStringLiteral("number"), QStringLiteral("1000"));
    options.addOption(countOption);
    options.addHelpOption();
    options.process(application);
    const int count = qMax(batch, options.value(countOption).toInt());

    const QTemporaryDir folder;
    QStringList paths;
    for (int i = 0; i < pictureCount; ++i) {
        paths.append(folder.filePath(QStringLiteral("%1.jpg").arg(i)));
        if (!photograph(quint32(i)).save(paths.last(), "JPG", 90))
            qFatal("no picture can be saved");
    }
    const qint64 before = Measure::residentBytes();
    Measure::resetPeak();
    double own = 0;
    double reference = 0;
    // In turns, so that a busy machine slows both.
    for (int done = 0; done < count; done += batch) {
        double start = Measure::cpuSeconds();
        for (int i = done; i < done + batch; ++i)
            makeThumbnail(paths.at(i % pictureCount));
        own += Measure::cpuSeconds() - start;
        start = Measure::cpuSeconds();
        for (int i = done; i < done + batch; ++i)
            decodeAnEighth(paths.at(i % pictureCount));
        reference += Measure::cpuSeconds() - start;
    }
    const qint64 peak = Measure::peakBytes() - before;
    int largest = 0;
    for (const QString &path : qAsConst(paths))
        largest = qMax(largest, difference(path));
    std::printf("%d thumbnails of 12-megapixel JPEGs: %.2f s, libjpeg at 1/8: %.2f s, ratio %.2f\n", count,
                own, reference, own / reference);
    std::printf("peak %.1f MB above the start; at most %d of 255 from a thumbnail out of the whole picture\n",
                double(peak) / 1e6, largest);
    return 0;
}
