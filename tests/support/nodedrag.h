#pragma once

#include "app/constants.h"

#include <QDataStream>
#include <QMimeData>

/** What the tree hands over when a node is dropped: its id and whether it fell on the lower half of a row. */
inline void fillNodeDrag(QMimeData &data, qint64 nodeId, bool below = false)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << nodeId << below;
    data.setData(Constants::nodeMimeType, bytes);
}
