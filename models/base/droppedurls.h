#pragma once

#include <QList>
#include <QUrl>

class QMimeData;

/** What other programs drop as a list of addresses. */
namespace DroppedUrls {
/**
 * The addresses without the list's comments. One with control signs comes as an invalid URL, as QUrl would
 * write the signs as if they had been meant.
 */
QList<QUrl> of(const QMimeData &data);
} // namespace DroppedUrls
