#pragma once

#include "models/base/edithost.h"

#include <QString>
#include <QVector>

class File;
class QImage;
class QMimeData;

/**
 * What ContentsModel asks of the controller above it: texts and pictures that a record does not hold, and the
 * edits that a view makes through the model. GUI thread.
 */
class ContentsHost : public virtual EditHost
{
public:
    /** The names of these tags in their order, joined by ", ". */
    virtual QString joinedTagNames(const QVector<qint64> &tagIds) const = 0;
    virtual bool isFileMissing(qint64 fileId) const = 0;
    /** The picture of a file, perhaps the one for "loading"; owned by the cache that answers. May be null. */
    virtual const QImage *thumbnailOf(qint64 fileId) const = 0;

    /** What a drag of these files carries; the caller owns it. */
    virtual QMimeData *dragData(const QVector<const File *> &files) const = 0;

    /** Both are false when the text was refused and nothing has changed. */
    virtual bool renameFile(qint64 fileId, const QString &name) = 0;
    virtual bool describeFile(qint64 fileId, const QString &description) = 0;
    virtual bool linkTagsToFile(qint64 fileId, const QVector<qint64> &tagIds) = 0;
};
