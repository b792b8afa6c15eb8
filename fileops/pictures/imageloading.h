#pragma once

#include "fileops/pictures/picturetask.h"
#include "fileops/pictures/storedimage.h"

#include <QObject>

/**
 * A picture on its way from the disk or the database, read by another process. It is not read on once this
 * object is gone. GUI thread.
 */
class ImageLoading : public QObject
{
    Q_OBJECT

public:
    /** There is no picture, for a reason that is known already. */
    explicit ImageLoading(StoredImage::State failure);
    /** Begins to read one; a file must have this stamp, and no picture comes out as this failure. */
    ImageLoading(const PictureRequest &request, const FileStamp &stamp, StoredImage::State failure);
    ~ImageLoading() override;

    /** It is not wanted any more: no picture comes. */
    void cancel();
    /** The picture, or why there is none; waits for it unless `finished` has come. */
    StoredImage result() const;

signals:
    /** From the event loop. */
    void finished();

private:
    StoredImage::State m_failure;
    FileStamp m_stamp;
    PictureTaskPointer m_task; ///< null when nothing is read
};
