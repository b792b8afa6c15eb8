#pragma once

#include "fileops/contents/imagestore.h"
#include "fileops/pictures/imageloading.h"

#include <memory>

class ErrorTeller;

/**
 * The pictures of files in their whole size, read and replaced with a word for each way in which that fails.
 * What ErrorTeller has told is not told again by whoever asks. Owned by the manager; GUI thread.
 */
class StoredPictures
{
public:
    StoredPictures(const AbstractQueryConstructor *constructor, ErrorTeller &errors)
        : m_images(constructor), m_errors(errors)
    {
    }

    /** Runs the statements, for whoever connects its news. */
    BaseDBProvider *provider() { return &m_images; }

    std::unique_ptr<ImageLoading> load(qint64 fileId);
    /** Refused when a reason was told. The changed ids are those of records to be read anew. */
    StoredImage::Saving save(qint64 fileId, const QImage &picture, QVector<qint64> &changedIds);

private:
    ImageStore m_images;
    ErrorTeller &m_errors;
};
