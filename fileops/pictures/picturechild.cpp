#include "fileops/pictures/picturechild.h"

#include "fileops/pictures/childside.h"
#include "fileops/pictures/picturelimits.h"
#include "fileops/pictures/picturemessage.h"
#include "fileops/pictures/picturereader.h"
#include "fileops/pictures/picturerequest.h"

#include <QColorSpace>
#include <QDataStream>
#include <QFile>
#include <QGuiApplication>
#include <QImageReader>
#include <QPainter>
#include <QSemaphore>
#include <QStandardPaths>
#include <QThreadPool>

#include <cstring>

namespace {
/**
 * Later no file opens any more, save for fonts on most systems: plug-ins, fonts and the thread that scales
 * are to be there by then.
 */
void loadAll()
{
    QImageReader::supportedImageFormats();
    QImage canvas(8, 8, QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&canvas);
    for (const char *family : {"sans-serif", "serif", "monospace"}) {
        for (const int weight : {QFont::Normal, QFont::Bold}) {
            for (const bool isItalic : {false, true}) {
                painter.setFont(QFont(QLatin1String(family), 8, weight, isItalic));
                // A letter of each of the scripts that most texts are in.
                painter.drawText(0, 8, QString::fromUtf8("Aя€Ωאعกक中あ한"));
            }
        }
    }
    ChildSide::keepReadable(QStandardPaths::standardLocations(QStandardPaths::FontsLocation));
    QThreadPool &pool = *QThreadPool::globalInstance();
    pool.setMaxThreadCount(1);
    pool.setExpiryTimeout(-1);
    // Waiting for the pool would end its thread.
    QSemaphore isRunning;
    pool.start([&isRunning] { isRunning.release(); });
    isRunning.acquire();
}

/** The notes that a turned picture keeps: its colour space and its texts. */
QByteArray notesOf(const QImage &image)
{
    QByteArray notes;
    QDataStream stream(&notes, QIODevice::WriteOnly);
    stream << image.colorSpace().iccProfile();
    const QStringList keys = image.textKeys();
    for (const QString &key : keys)
        stream << key << image.text(key);
    return notes;
}

bool sendPixels(const QImage &image)
{
    // Lines end where those of an image of the other end do: both are made by the same rule.
    return ChildSide::send(image.constBits(), static_cast<size_t>(image.sizeInBytes()));
}

bool answer(const QImage &image)
{
    PictureMessage::Answer head = {};
    QByteArray notes = notesOf(image);
    if (notes.size() > PictureLimit::notesBytes)
        notes.clear();
    const QVector<QRgb> colours = image.colorTable();
    head.isRead = 1;
    head.width = image.width();
    head.height = image.height();
    head.format = image.format();
    head.pixelBytes = image.sizeInBytes();
    head.dotsPerMeterX = image.dotsPerMeterX();
    head.dotsPerMeterY = image.dotsPerMeterY();
    head.colourCount = colours.size();
    head.notesLength = notes.size();
    return ChildSide::send(&head, sizeof head) &&
           ChildSide::send(colours.constData(), static_cast<size_t>(colours.size()) * sizeof(QRgb)) &&
           ChildSide::send(notes.constData(), static_cast<size_t>(notes.size())) && sendPixels(image);
}

bool answer(const PictureReader::Facts &facts)
{
    PictureMessage::Answer head = {};
    head.isRead = facts.size.isValid();
    head.width = facts.size.width();
    head.height = facts.size.height();
    head.transformation = int(facts.transformation);
    head.pictureCount = facts.pictureCount;
    return ChildSide::send(&head, sizeof head);
}

bool serve(const PictureMessage::Request &request, int descriptor)
{
    QFile file;
    if (!file.open(descriptor, QIODevice::ReadOnly, QFileDevice::DontCloseHandle))
        return false;
    PictureReader reader(file);
    if (PictureUse(request.use) == PictureUse::Facts)
        return answer(reader.facts());
    const QImage image =
        PictureUse(request.use) == PictureUse::Thumbnail ? reader.thumbnail() : reader.whole();
    const PictureMessage::Answer unreadable = {};
    return image.isNull() ? ChildSide::send(&unreadable, sizeof unreadable) : answer(image);
}
} // namespace

bool PictureChild::isAskedFor(int argc, char *argv[])
{
    return argc == 2 && std::strcmp(argv[1], argument) == 0;
}

int PictureChild::run()
{
    ChildSide::begin();
    // Texts in drawings need a platform, and this one no display.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    char name[] = "vorna";
    char *arguments[] = {name, nullptr};
    int count = 1;
    const QGuiApplication application(count, arguments);
    loadAll();
    ChildSide::shutIn(PictureLimit::mostBytes);
    PictureMessage::Request request = {};
    for (int file = -1; ChildSide::receive(&request, sizeof request, file);) {
        ChildSide::limit(request.bytes, request.seconds);
        const bool isAnswered = ChildSide::send(&PictureMessage::received, 1) && serve(request, file);
        ChildSide::closeFile(file);
        if (!isAnswered)
            break;
    }
    ChildSide::leave(0);
}
