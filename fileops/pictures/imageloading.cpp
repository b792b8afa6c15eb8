#include "fileops/pictures/imageloading.h"

#include "fileops/pictures/picturepool.h"

#include <QTimer>

ImageLoading::ImageLoading(StoredImage::State failure) : m_failure(failure)
{
    QTimer::singleShot(0, this, &ImageLoading::finished);
}

ImageLoading::ImageLoading(const PictureRequest &request, const FileStamp &stamp, StoredImage::State failure)
    : m_failure(failure), m_stamp(stamp), m_task(PictureTaskPointer::create(request))
{
    connect(m_task.data(), &PictureTask::finished, this, &ImageLoading::finished, Qt::QueuedConnection);
    PicturePool::instance().start(m_task, PicturePool::BeforeOthers);
}

ImageLoading::~ImageLoading()
{
    cancel();
}

void ImageLoading::cancel()
{
    if (m_task)
        m_task->cancel();
}

StoredImage ImageLoading::result() const
{
    StoredImage result;
    result.state = m_failure;
    if (!m_task)
        return result;
    const PictureAnswer answer = m_task->waitedFor();
    if (answer.state == PictureAnswer::Read && answer.stamp == m_stamp) {
        result.state = StoredImage::Loaded;
        result.image = answer.image;
    }
    return result;
}
