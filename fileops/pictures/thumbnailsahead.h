#pragma once

#include "fileops/pictures/picturetask.h"

#include <QHash>
#include <QStringList>

#include <functional>

/**
 * The thumbnails of a list of files that is worked off from its start to its end: while one is stored, those
 * behind it are read and encoded, as many at once as there are cores. A few stay at hand for who goes back a step.
 * Worker's thread.
 */
class ThumbnailsAhead
{
public:
    /** Waiting ends when `shouldEnd` says so. */
    ThumbnailsAhead(const QStringList &paths, const std::function<bool()> &shouldEnd);
    ~ThumbnailsAhead();
    ThumbnailsAhead(const ThumbnailsAhead &) = delete;
    ThumbnailsAhead &operator=(const ThumbnailsAhead &) = delete;

    /** The bytes of its table; empty when the file is no picture that can be read. */
    QByteArray pngOf(const QString &path);

private:
    void startBehind(const QString &path);
    void start(const QString &path);
    void forgetOld(int current);

    const QStringList m_paths;
    const std::function<bool()> m_shouldEnd;
    int m_next = 0;
    QStringList m_begun; // in the order of the paths
    QHash<QString, PictureTaskPointer> m_tasks;
};
