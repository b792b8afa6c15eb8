#include "ui/preview/picturearea.h"

#include "ui/preview/filepreview.h"
#include "ui/preview/picturescale.h"

#include <QMouseEvent>
#include <QScrollBar>
#include <QWheelEvent>

namespace {

constexpr double wheelStep = QWheelEvent::DefaultDeltasPerStep;

} // namespace

PictureArea::PictureArea(QWidget *parent) : QScrollArea(parent), m_preview(new FilePreview)
{
    setObjectName(QStringLiteral("PictureArea"));
    setFrameShape(QFrame::NoFrame);
    setAlignment(Qt::AlignCenter);
    // The arrow keys belong to the window, which walks by them.
    setFocusPolicy(Qt::NoFocus);
    setWidget(m_preview);
    viewport()->setAutoFillBackground(true);
}

void PictureArea::showPicture(const QImage &picture)
{
    m_isDragged = false;
    m_preview->setPicture(picture);
    m_fitting = Fitting::Halved;
    refit();
}

void PictureArea::showTurned(const QImage &picture)
{
    m_preview->setPicture(picture);
    refit();
    updateCursor();
}

void PictureArea::showMessage(const QString &text)
{
    m_isDragged = false;
    m_preview->setMessage(text);
    updateCursor();
}

double PictureArea::scale() const
{
    return m_preview->scale();
}

void PictureArea::setBlack(bool black)
{
    // Bars would stand out white; a drag moves the picture without them.
    const Qt::ScrollBarPolicy bars = black ? Qt::ScrollBarAlwaysOff : Qt::ScrollBarAsNeeded;
    setHorizontalScrollBarPolicy(bars);
    setVerticalScrollBarPolicy(bars);
    if (!black) {
        viewport()->setPalette(QPalette());
        m_preview->setPalette(QPalette());
        return;
    }
    QPalette colours = viewport()->palette();
    colours.setColor(QPalette::Window, Qt::black);
    colours.setColor(QPalette::WindowText, Qt::white);
    viewport()->setPalette(colours);
    m_preview->setPalette(colours);
}

void PictureArea::fit()
{
    m_fitting = Fitting::Filling;
    refit();
}

void PictureArea::refit()
{
    if (m_fitting == Fitting::None || !m_preview->hasPicture())
        return;
    const QSize picture = m_preview->pictureSize();
    const QSize room = (QSizeF(maximumViewportSize()) * devicePixelRatioF()).toSize();
    applyScale(m_fitting == Fitting::Halved ? PictureScale::fitting(picture, room)
                                            : PictureScale::filling(picture, room));
}

void PictureArea::zoomIn()
{
    zoomAt(centre(), PictureScale::zoomed(scale(), 1, m_preview->pictureSize()));
}

void PictureArea::zoomOut()
{
    zoomAt(centre(), PictureScale::zoomed(scale(), -1, m_preview->pictureSize()));
}

void PictureArea::zoom100()
{
    zoomAt(centre(), 1.0);
}

void PictureArea::applyScale(double scale)
{
    m_preview->setScale(scale);
    updateCursor();
    emit scaleChanged(scale);
}

void PictureArea::zoomAt(const QPointF &point, double scale)
{
    if (!m_preview->hasPicture())
        return;
    m_fitting = Fitting::None;
    const QPointF onPicture = point - m_preview->pos();
    const QSizeF before = m_preview->size();
    applyScale(scale);
    const QSizeF after = m_preview->size();
    horizontalScrollBar()->setValue(qRound(onPicture.x() / before.width() * after.width() - point.x()));
    verticalScrollBar()->setValue(qRound(onPicture.y() / before.height() * after.height() - point.y()));
}

QPointF PictureArea::centre() const
{
    return {viewport()->width() / 2.0, viewport()->height() / 2.0};
}

bool PictureArea::isLargerThanRoom() const
{
    return horizontalScrollBar()->maximum() > 0 || verticalScrollBar()->maximum() > 0;
}

void PictureArea::updateCursor()
{
    if (m_isDragged)
        viewport()->setCursor(Qt::ClosedHandCursor);
    else if (isLargerThanRoom())
        viewport()->setCursor(Qt::OpenHandCursor);
    else
        viewport()->unsetCursor();
}

void PictureArea::resizeEvent(QResizeEvent *event)
{
    QScrollArea::resizeEvent(event);
    refit();
    updateCursor();
}

void PictureArea::wheelEvent(QWheelEvent *event)
{
    const int delta = event->angleDelta().y();
    if (delta == 0) {
        QScrollArea::wheelEvent(event);
        return;
    }
    zoomAt(event->position(), PictureScale::zoomed(scale(), delta / wheelStep, m_preview->pictureSize()));
    event->accept();
}

void PictureArea::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton || !isLargerThanRoom()) {
        event->ignore();
        return;
    }
    m_isDragged = true;
    m_dragPoint = event->pos();
    updateCursor();
}

void PictureArea::mouseMoveEvent(QMouseEvent *event)
{
    if (!m_isDragged)
        return;
    const QPoint way = event->pos() - m_dragPoint;
    m_dragPoint = event->pos();
    horizontalScrollBar()->setValue(horizontalScrollBar()->value() - way.x());
    verticalScrollBar()->setValue(verticalScrollBar()->value() - way.y());
}

void PictureArea::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    m_isDragged = false;
    updateCursor();
}
