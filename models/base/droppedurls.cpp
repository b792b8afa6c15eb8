#include "models/base/droppedurls.h"

#include "app/settings/constants.h"

#include <QMimeData>

#include <algorithm>

QList<QUrl> DroppedUrls::of(const QMimeData &data)
{
    QByteArray list = data.data(Constants::uriMimeType);
    if (list.endsWith('\0')) // the end of a text in some programs
        list.chop(1);
    QList<QUrl> urls;
    const QList<QByteArray> lines = list.split('\n');
    for (const QByteArray &line : lines) {
        const QByteArray address = line.trimmed();
        if (address.isEmpty() || address.startsWith('#'))
            continue;
        const bool hasControls =
            std::any_of(address.cbegin(), address.cend(), [](char sign) { return uchar(sign) < ' '; });
        urls.append(hasControls ? QUrl() : QUrl::fromEncoded(address));
    }
    return urls;
}
