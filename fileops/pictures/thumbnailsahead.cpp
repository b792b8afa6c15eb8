#include "fileops/pictures/thumbnailsahead.h"

#include "fileops/pictures/picturepool.h"
#include "fileops/pictures/thumbnailmaker.h"

#include <QDebug>

namespace {
constexpr int millisecondsBetweenLooks = 50;
// A run of files that fails as one is gone through once more.
constexpr int mostKept = 16;
// Between two pictures there may be a million other files.
constexpr int mostLookedAt = 1000;
} // namespace

ThumbnailsAhead::ThumbnailsAhead(const QStringList &paths, const std::function<bool()> &shouldEnd)
    : m_paths(paths), m_shouldEnd(shouldEnd)
{
}

ThumbnailsAhead::~ThumbnailsAhead()
{
    for (const PictureTaskPointer &task : qAsConst(m_tasks))
        task->cancel();
}

QByteArray ThumbnailsAhead::pngOf(const QString &path)
{
    startBehind(path);
    const PictureTaskPointer task = m_tasks.value(path);
    while (!task->wait(millisecondsBetweenLooks)) {
        if (m_shouldEnd())
            return QByteArray();
    }
    const PictureAnswer answer = task->answer();
    if (answer.state != PictureAnswer::Read)
        qDebug("Failed load image data: %s", qUtf8Printable(path));
    return answer.png;
}

void ThumbnailsAhead::startBehind(const QString &path)
{
    if (!m_tasks.contains(path))
        start(path);
    const int current = m_begun.indexOf(path);
    const int wanted = current + 2 * PicturePool::instance().width();
    for (int looked = 0; m_next < m_paths.size() && m_begun.size() <= wanted && looked < mostLookedAt;
         ++looked) {
        const QString &next = m_paths.at(m_next++);
        if (ThumbnailMaker::isImageName(next) && !m_tasks.contains(next))
            start(next);
    }
    forgetOld(current);
}

void ThumbnailsAhead::start(const QString &path)
{
    m_begun.append(path);
    const auto task = PictureTaskPointer::create(PictureRequest{PictureUse::Thumbnail, path, {}, true});
    m_tasks.insert(path, task);
    PicturePool::instance().start(task);
}

void ThumbnailsAhead::forgetOld(int current)
{
    for (int old = current - mostKept; old > 0; --old)
        m_tasks.remove(m_begun.takeFirst());
}
