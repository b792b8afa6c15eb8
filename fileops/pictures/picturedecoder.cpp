#include "fileops/pictures/picturedecoder.h"

#include "fileops/looks/awaitedlook.h"
#include "fileops/pictures/picturelimits.h"
#include "fileops/pictures/thumbnailcanvas.h"

#include <QColorSpace>
#include <QDataStream>
#include <QDebug>
#include <QElapsedTimer>

#include <algorithm>

namespace {
const char *programPath = nullptr;
const char *programArgument = nullptr;

// A child begins with loading its libraries, on a busy machine too.
constexpr qint64 mostMillisecondsOfStarting = 30LL * 1000;
// Files may come from a slow disk, and processors have other work.
constexpr int clockSecondsPerSecond = 3;

/** The file of a request, opened for the child. */
class OpenPicture
{
public:
    OpenPicture(const PictureRequest &request, const std::function<bool()> &isWanted)
        : m_isInMemory(request.path.isEmpty()), m_bytes(request.bytes.size())
    {
        if (m_isInMemory)
            m_memory = ChildProcess::fileOf(request.bytes);
        else
            m_file = opened(request.path, isWanted);
    }
    ~OpenPicture() { ChildProcess::closeFile(m_memory); }
    OpenPicture(const OpenPicture &) = delete;
    OpenPicture &operator=(const OpenPicture &) = delete;

    int descriptor() const { return m_isInMemory ? m_memory : m_file->descriptor(); }
    qint64 size() const { return m_isInMemory ? m_bytes : m_file->size(); }
    FileStamp stamp() const { return m_isInMemory ? FileStamp() : m_file->stamp(); }
    bool isUnchanged() const { return m_isInMemory || m_file->isAsOpened(); }

private:
    /** A disk that does not answer must not hold the end of the program. */
    static std::shared_ptr<RegularFile> opened(const QString &path, const std::function<bool()> &isWanted)
    {
        const auto open = [path](const AwaitedLook::ShouldEnd &) {
            auto file = std::make_shared<RegularFile>();
            file->open(path);
            return file;
        };
        const auto file = AwaitedLook::run(open, [&isWanted] { return !isWanted(); });
        return file ? *file : std::make_shared<RegularFile>();
    }

    bool m_isInMemory;
    qint64 m_bytes;
    std::shared_ptr<RegularFile> m_file;
    int m_memory = -1;
};

/** Those who paint take it that each pixel has a colour. */
QVector<QRgb> completed(QVector<QRgb> colours, const QImage &image)
{
    int needed = image.depth() == 1 ? 2 : 0;
    for (int y = 0; image.format() == QImage::Format_Indexed8 && y < image.height(); ++y) {
        const uchar *line = image.constScanLine(y);
        needed = qMax(needed, 1 + *std::max_element(line, line + image.width()));
    }
    if (colours.size() < needed)
        colours.resize(needed);
    return colours;
}

void setNotes(const QByteArray &notes, QImage &image)
{
    QDataStream stream(notes);
    QByteArray profile;
    stream >> profile;
    // Only what the child has read without harm comes here.
    if (!profile.isEmpty())
        image.setColorSpace(QColorSpace::fromIccProfile(profile));
    while (!stream.atEnd()) {
        QString key;
        QString text;
        stream >> key >> text;
        if (stream.status() != QDataStream::Ok)
            return;
        image.setText(key, text);
    }
}
} // namespace

void PictureDecoder::setProgram(const char *program, const char *argument)
{
    programPath = program;
    programArgument = argument;
}

PictureAnswer PictureDecoder::read(const PictureRequest &request, const PictureLimits &limits,
                                   const std::function<bool()> &isWanted)
{
    PictureAnswer answer;
    const OpenPicture picture(request, isWanted);
    answer.stamp = picture.stamp();
    answer.state = PictureAnswer::Unreadable;
    if (picture.descriptor() < 0)
        return answer;
    const int seconds = limits.secondsFor(picture.size());
    if (!begin({limits.bytesFor(picture.size()), seconds, qint32(request.use)}, picture.descriptor(),
               isWanted)) {
        answer.state = isWanted() ? PictureAnswer::Unavailable : PictureAnswer::Canceled;
        return answer;
    }
    QElapsedTimer clock;
    clock.start();
    const bool isReceived = receive(request.use, answer, [&] {
        return isWanted() && !clock.hasExpired(qint64(seconds) * clockSecondsPerSecond * 1000);
    });
    if (isReceived) {
        if (answer.state == PictureAnswer::Read && !picture.isUnchanged())
            answer.state = PictureAnswer::Unreadable;
        return answer;
    }
    answer.state = isWanted() ? PictureAnswer::Failed : PictureAnswer::Canceled;
    m_child.end();
    return answer;
}

/** A child that has gone while it had nothing to do says nothing about the picture: another one gets it. */
bool PictureDecoder::begin(const PictureMessage::Request &message, int file, const Wait &isWanted)
{
    for (int attempts = 0; attempts < 2 && isWanted(); ++attempts) {
        QElapsedTimer clock;
        clock.start();
        const Wait mayWait = [&] { return isWanted() && !clock.hasExpired(mostMillisecondsOfStarting); };
        char received = 0;
        if ((m_child.isRunning() || (programPath && m_child.start(programPath, programArgument))) &&
            m_child.send(&message, sizeof message, file) && m_child.receive(&received, 1, mayWait) &&
            received == PictureMessage::received)
            return true;
        m_child.end();
    }
    if (isWanted())
        qWarning("No process for reading pictures can be started.");
    return false;
}

bool PictureDecoder::receive(PictureUse use, PictureAnswer &answer, const Wait &mayWait)
{
    PictureMessage::Answer head = {};
    if (!m_child.receive(&head, sizeof head, mayWait))
        return false;
    answer.state = PictureAnswer::Unreadable;
    if (use == PictureUse::Facts) {
        answer.size = QSize(head.width, head.height);
        answer.transformation = QImageIOHandler::Transformations(head.transformation);
        answer.pictureCount = head.pictureCount;
    }
    if (!head.isRead)
        return true;
    if (use != PictureUse::Facts &&
        (!PictureMessage::isPlausible(head, use) || !receiveImage(head, answer, mayWait)))
        return false;
    answer.state = PictureAnswer::Read;
    return true;
}

bool PictureDecoder::receiveImage(const PictureMessage::Answer &head, PictureAnswer &answer,
                                  const Wait &mayWait)
{
    QImage image(head.width, head.height, QImage::Format(head.format));
    QVector<QRgb> colours(head.colourCount);
    QByteArray notes(head.notesLength, Qt::Uninitialized);
    if (image.sizeInBytes() != head.pixelBytes ||
        !m_child.receive(colours.data(), size_t(colours.size()) * sizeof(QRgb), mayWait) ||
        !m_child.receive(notes.data(), size_t(notes.size()), mayWait) ||
        !m_child.receive(image.bits(), size_t(head.pixelBytes), mayWait))
        return false;
    if (image.colorCount() > 0 || head.colourCount > 0)
        image.setColorTable(completed(colours, image));
    image.setDotsPerMeterX(head.dotsPerMeterX);
    image.setDotsPerMeterY(head.dotsPerMeterY);
    setNotes(notes, image);
    answer.image = image;
    return true;
}
