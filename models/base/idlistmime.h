#pragma once

#include <QString>
#include <QVector>

class QMimeData;

/** The ids that an internal drag carries under one of our MIME types: one QVector<qint64> as a QDataStream.
 */
namespace IdListMime {
/** The caller owns the data. */
QMimeData *pack(const QString &mimeType, const QVector<qint64> &ids);

/** Empty when there are none, or when the bytes are no such list. */
QVector<qint64> unpack(const QMimeData *data, const QString &mimeType);
} // namespace IdListMime
