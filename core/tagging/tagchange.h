#pragma once

#include <QMetaType>
#include <QVector>

/** The files that a tag is linked to and unlinked from. */
struct TagChange
{
    qint64 tagId = 0;
    QVector<qint64> linked;
    QVector<qint64> unlinked;
};

/** Of several tags, each once. */
using TagChanges = QVector<TagChange>;
Q_DECLARE_METATYPE(TagChanges)

namespace Tagging {
/** All files to the first tags, and from the others; each file once, by rising ids. */
TagChanges of(QVector<qint64> fileIds, const QVector<qint64> &linked, const QVector<qint64> &unlinked);
/** How many pairs of file and tag they concern. */
qint64 pairs(const TagChanges &changes);
/** The files of all of them, by rising ids. */
QVector<qint64> files(const TagChanges &changes);
QVector<qint64> tags(const TagChanges &changes);
/** What takes them back. */
TagChanges inverse(TagChanges changes);
} // namespace Tagging
