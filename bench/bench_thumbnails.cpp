// Thumbnails of large photographs, read by as many processes as there are cores, beside the least that
// reading them takes: libjpeg's own decoding at an eighth of the size in one thread, which looks at every
// byte.

#include "bench/measure.h"
#include "fileops/pictures/thumbnailcanvas.h"
#include "fileops/pictures/thumbnailmaker.h"
#include "fileops/pictures/thumbnailsahead.h"

#include <QCommandLineParser>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QRandomGenerator>
#include <QTemporaryDir>

#include <cmath>
#include <cstdio>
#include <memory>
#include <vector>

#include <sys/resource.h>

#include <jpeglib.h>

namespace {
const int pictureCount = Measure::amount(16);
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

/** As a batch of added files has them made. */
void makeThumbnails(const QStringList &paths)
{
    ThumbnailsAhead thumbnails(paths, [] { return false; });
    for (const QString &path : paths) {
        const QByteArray png = thumbnails.pngOf(path);
        if (png.isEmpty())
            qFatal("no thumbnail of %s", qPrintable(path));
        sink = sink + png.size();
    }
}

/** Of the processes that have ended. */
double childrenSeconds()
{
    rusage used = {};
    ::getrusage(RUSAGE_CHILDREN, &used);
    return double(used.ru_utime.tv_sec + used.ru_stime.tv_sec) +
           double(used.ru_utime.tv_usec + used.ru_stime.tv_usec) / 1e6;
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
    auto application = std::make_unique<QGuiApplication>(argc, argv);
    QCommandLineParser options;
    const QCommandLineOption countOption(QStringLiteral("count"), QStringLiteral("Thumbnails to make."),
                                         QStringLiteral("number"), QStringLiteral("1000"));
    options.addOption(countOption);
    options.addHelpOption();
    options.process(*application);
    const int batches = qMax(1, options.value(countOption).toInt() / pictureCount);

    const QTemporaryDir folder;
    QStringList paths;
    for (int i = 0; i < pictureCount; ++i) {
        paths.append(folder.filePath(QStringLiteral("%1.jpg").arg(i)));
        if (!photograph(quint32(i)).save(paths.last(), "JPG", 90))
            qFatal("no picture can be saved");
    }
    makeThumbnails(paths); // the processes start
    const qint64 before = Measure::residentBytes();
    Measure::resetPeak();
    const double cpuBefore = Measure::cpuSeconds();
    double own = 0;
    double reference = 0;
    double referenceCpu = 0;
    // In turns, so that a busy machine slows both.
    for (int done = 0; done < batches; ++done) {
        QElapsedTimer clock;
        clock.start();
        makeThumbnails(paths);
        own += double(clock.nsecsElapsed()) / 1e9;
        clock.start();
        const double start = Measure::cpuSeconds();
        for (const QString &path : qAsConst(paths))
            decodeAnEighth(path);
        reference += double(clock.nsecsElapsed()) / 1e9;
        referenceCpu += Measure::cpuSeconds() - start;
    }
    const qint64 peak = Measure::peakBytes() - before;
    const double ownCpu = Measure::cpuSeconds() - cpuBefore - referenceCpu;
    const int largest = difference(paths.first());
    application.reset(); // ends the processes
    const int count = batches * pictureCount;
    // The pictures before and behind the loop count among theirs.
    const double childrenCpu = childrenSeconds() * count / (count + pictureCount + 1);
    std::printf(
        "%d thumbnails of 12-megapixel JPEGs by the clock: %.2f s, libjpeg at 1/8: %.2f s, ratio %.2f\n",
        count, own, reference, own / reference);
    std::printf("by processor time: %.2f s, of it %.2f s in the children; libjpeg %.2f s, ratio %.2f\n",
                ownCpu + childrenCpu, childrenCpu, referenceCpu, (ownCpu + childrenCpu) / referenceCpu);
    std::printf("peak %.1f MB above the start; at most %d of 255 from a thumbnail out of the whole picture\n",
                double(peak) / 1e6, largest);
    return 0;
}
