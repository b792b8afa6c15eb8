#pragma once

#include "fileops/pictures/picturerequest.h"

#include <QMutex>
#include <QSet>

/**
 * The pictures that have ended their reader or taken too long since the program began: they are not tried
 * again. A file that has changed since is another picture. Any thread.
 */
class FailedPictures
{
public:
    bool contains(const PictureRequest &request) const;
    /** The stamp is that of the file when it was read. */
    void add(const PictureRequest &request, const FileStamp &stamp);

private:
    static QByteArray keyOf(const PictureRequest &request, const FileStamp &stamp);

    mutable QMutex m_mutex;
    QSet<QByteArray> m_keys;
    QSet<qint64> m_sizes; // of bytes: others need no digest
};
