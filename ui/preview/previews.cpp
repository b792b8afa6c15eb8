#include "ui/preview/previews.h"

#include "core/controllers/mainviewcontroller.h"
#include "ui/preview/previewbox.h"
#include "ui/preview/windowplace.h"
#include "ui/widgets/bringtofront.h"

#include <QScreen>

Previews::Previews(QWidget *origin) : QObject(origin), m_origin(origin) {}

Previews::~Previews()
{
    closeAll();
}

void Previews::open(qint64 fileId, MainViewController *controller)
{
    m_boxes.removeAll(nullptr);
    for (const QPointer<PreviewBox> &box : qAsConst(m_boxes)) {
        if (box->isVisible() && box->fileId() == fileId) {
            bringToFront(box);
            return;
        }
    }
    auto *box = new PreviewBox(fileId, controller->sorter(), controller);
    if (m_origin)
        box->setOrigin(m_origin->window());
    box->setAttribute(Qt::WA_DeleteOnClose);
    connect(box, &PreviewBox::changedThumbnail, controller, &MainViewController::reloadThumbnail);
    connect(box, &PreviewBox::showingFile, this, &Previews::showingFile);
    placeBesideOthers(box);
    m_boxes.append(box);
    box->show();
}

void Previews::placeBesideOthers(PreviewBox *box) const
{
    QVector<QRect> frames;
    QSize border;
    for (const QPointer<PreviewBox> &other : m_boxes) {
        if (!other->isVisible() || other->windowState() != Qt::WindowNoState)
            continue;
        frames.append(other->frameGeometry());
        border = other->frameGeometry().size() - other->size();
    }
    if (!frames.isEmpty() && box->windowState() == Qt::WindowNoState)
        box->move(WindowPlace::beside(box->size() + border, frames, box->screen()->availableGeometry()));
}

QWidget *Previews::saveWaiting()
{
    const QVector<QPointer<PreviewBox>> boxes = m_boxes;
    for (const QPointer<PreviewBox> &box : boxes) {
        if (!box || box->saveWaiting())
            continue;
        bringToFront(box);
        return box;
    }
    return nullptr;
}

void Previews::readSettings()
{
    for (const QPointer<PreviewBox> &box : qAsConst(m_boxes)) {
        if (box)
            box->readSettings();
    }
}

void Previews::closeAll()
{
    // Taken out first: what a previewer saves on its way out may come back here.
    QVector<QPointer<PreviewBox>> boxes;
    boxes.swap(m_boxes);
    for (const QPointer<PreviewBox> &box : qAsConst(boxes))
        delete box.data();
}
