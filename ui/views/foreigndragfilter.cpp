#include "ui/views/foreigndragfilter.h"

#include "app/constants.h"

#include <QDropEvent>
#include <QMimeData>

namespace {
bool carriesIds(const QMimeData &data)
{
    return data.hasFormat(Constants::tagMimeType) || data.hasFormat(Constants::fileMimeType) ||
           data.hasFormat(Constants::nodeMimeType);
}
} // namespace

bool ForeignDragFilter::eventFilter(QObject * /*watched*/, QEvent *event)
{
    const QEvent::Type type = event->type();
    if (type != QEvent::DragEnter && type != QEvent::DragMove && type != QEvent::Drop)
        return false;
    auto *drop = static_cast<QDropEvent *>(event);
    // A drag that began in this process has its source.
    if (drop->source() || !carriesIds(*drop->mimeData()))
        return false;
    drop->ignore();
    return true;
}
