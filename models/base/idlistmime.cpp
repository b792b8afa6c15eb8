#include "models/base/idlistmime.h"

#include <QDataStream>
#include <QMimeData>
#include <QtEndian>

namespace {
constexpr int countSize = 4;
constexpr int idSize = 8;
} // namespace

QMimeData *IdListMime::pack(const QString &mimeType, const QVector<qint64> &ids)
{
    // As a QDataStream writes them, only in one go.
    QByteArray bytes(countSize + idSize * ids.size(), Qt::Uninitialized);
    qToBigEndian(quint32(ids.size()), bytes.data());
    qToBigEndian<qint64>(ids.constData(), ids.size(), bytes.data() + countSize);
    auto *data = new QMimeData;
    data->setData(mimeType, bytes);
    return data;
}

QVector<qint64> IdListMime::unpack(const QMimeData *data, const QString &mimeType)
{
    if (!data || !data->hasFormat(mimeType))
        return {};
    const QByteArray bytes = data->data(mimeType);
    // Another program may offer the type: a count that the bytes cannot hold would be allocated all the same.
    QDataStream stream(bytes);
    quint32 count = 0;
    stream >> count;
    if (stream.status() != QDataStream::Ok || count > quint32(bytes.size() - countSize) / idSize)
        return {};
    QVector<qint64> ids(static_cast<int>(count));
    for (qint64 &id : ids)
        stream >> id;
    return ids;
}
