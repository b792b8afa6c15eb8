#include "ui/views/foreigndragfilter.h"

#include "app/settings/addingsettings.h"
#include "app/settings/constants.h"
#include "core/controllers/filedragdata.h"

#include <QCoreApplication>
#include <QDropEvent>
#include <QMimeData>

namespace {
bool carriesIds(const QMimeData &data)
{
    return data.hasFormat(Constants::tagMimeType) || data.hasFormat(Constants::fileMimeType) ||
           data.hasFormat(Constants::nodeMimeType);
}

/** The URLs of a drag and nothing else of it. Lives no longer than the event that brought it. */
class UrlsOnly : public QMimeData
{
public:
    explicit UrlsOnly(const QMimeData &data) : m_data(data) {}
    QStringList formats() const override { return {Constants::uriMimeType}; }

protected:
    QVariant retrieveData(const QString &format, QVariant::Type) const override
    {
        return format == Constants::uriMimeType ? QVariant(m_data.data(format)) : QVariant();
    }

private:
    const QMimeData &m_data;
};

// Links to temporary copies would soon lead nowhere.
bool hasLastingUrls(const QMimeData &data)
{
    return data.hasUrls() && !(data.hasFormat(FileDragData::copiesFormat) && AddingSettings::linkToFiles());
}

template <class Event>
void sendUrls(QObject *watched, QDropEvent &drop)
{
    const UrlsOnly urls(*drop.mimeData());
    Event event(drop.pos(), drop.possibleActions(), &urls, drop.mouseButtons(), drop.keyboardModifiers());
    event.setDropAction(drop.dropAction());
    QCoreApplication::sendEvent(watched, &event);
    drop.setDropAction(event.dropAction());
    drop.setAccepted(event.isAccepted());
}
} // namespace

bool ForeignDragFilter::eventFilter(QObject *watched, QEvent *event)
{
    const QEvent::Type type = event->type();
    if (type != QEvent::DragEnter && type != QEvent::DragMove && type != QEvent::Drop)
        return false;
    auto *drop = static_cast<QDropEvent *>(event);
    // A drag that began in this process has its source.
    if (drop->source() || !carriesIds(*drop->mimeData()))
        return false;
    if (!hasLastingUrls(*drop->mimeData()))
        drop->ignore();
    else if (type == QEvent::DragEnter)
        sendUrls<QDragEnterEvent>(watched, *drop);
    else if (type == QEvent::DragMove)
        sendUrls<QDragMoveEvent>(watched, *drop);
    else
        sendUrls<QDropEvent>(watched, *drop);
    return true;
}
