#include "ui/preview/filepreview.h"

#include "ui/preview/picturescale.h"

#include <QPaintEvent>
#include <QPainter>

#include <cmath>

namespace {

// Down to here each pixel of the original has a part in what the painter makes of it.
constexpr double lowestPaintedScale = 0.5;
// From here on single pixels are what one wants to see.
constexpr double lowestBlockyScale = 3;
constexpr int refiningMilliseconds = 120;

QBrush chequered()
{
    constexpr int side = 8;
    QPixmap tile(2 * side, 2 * side);
    tile.fill(QColor(0xff, 0xff, 0xff));
    QPainter painter(&tile);
    const QColor grey(0xd8, 0xdc, 0xe0);
    painter.fillRect(0, 0, side, side, grey);
    painter.fillRect(side, side, side, side, grey);
    return QBrush(tile);
}

} // namespace

FilePreview::FilePreview(QWidget *parent) : QLabel(parent)
{
    setObjectName(QStringLiteral("FilePreview"));
    setScaledContents(true);
    setAlignment(Qt::AlignCenter);
    setTextFormat(Qt::PlainText);
    m_refining.setSingleShot(true);
    m_refining.setInterval(refiningMilliseconds);
    connect(&m_refining, &QTimer::timeout, this, &FilePreview::makeShown);
}

void FilePreview::setPicture(const QImage &picture)
{
    clear();
    m_original = QPixmap::fromImage(picture);
    m_shown = QPixmap();
    setScale(m_scale);
    m_refining.stop();
    makeShown();
}

void FilePreview::setMessage(const QString &text)
{
    m_original = QPixmap();
    m_shown = QPixmap();
    m_refining.stop();
    setText(text);
    resize(sizeHint());
}

void FilePreview::setScale(double scale)
{
    if (!hasPicture())
        return;
    m_scale = scale;
    // A large picture takes longer to scale than a wheel to turn: at first its size, then its looks.
    m_refining.start();
    resize(sizeHint());
    update();
}

QSize FilePreview::sizeHint() const
{
    return hasPicture() ? PictureScale::sizeAt(m_original.size(), m_scale / devicePixelRatioF())
                        : QLabel::sizeHint();
}

QSize FilePreview::shownPixels() const
{
    return PictureScale::sizeAt(m_original.size(), m_scale);
}

bool FilePreview::isFarBelowOriginal() const
{
    return m_scale < lowestPaintedScale;
}

void FilePreview::makeShown()
{
    if (!hasPicture())
        return;
    if (!isFarBelowOriginal())
        m_shown = QPixmap();
    else if (m_shown.size() != shownPixels())
        m_shown = m_original.scaled(shownPixels(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    update();
}

void FilePreview::paintEvent(QPaintEvent *event)
{
    if (!hasPicture()) {
        QLabel::paintEvent(event);
        return;
    }
    QPainter painter(this);
    if (m_original.hasAlphaChannel())
        painter.fillRect(event->rect(), chequered());
    if (isFarBelowOriginal() && m_shown.size() == shownPixels())
        painter.drawPixmap(rect(), m_shown);
    else
        paintPart(painter, event->rect());
}

// Whole pixels of the original, so that parts painted at different times fit together.
void FilePreview::paintPart(QPainter &painter, const QRect &exposed) const
{
    const double horizontal = double(width()) / m_original.width();
    const double vertical = double(height()) / m_original.height();
    const int left = int(std::floor(exposed.left() / horizontal));
    const int top = int(std::floor(exposed.top() / vertical));
    const int right = int(std::ceil((exposed.right() + 1) / horizontal));
    const int bottom = int(std::ceil((exposed.bottom() + 1) / vertical));
    // One more at each side, which smoothing mixes into the outer ones.
    const QRect source = QRect(QPoint(left - 1, top - 1), QPoint(right, bottom)) & m_original.rect();
    const QRectF target(source.left() * horizontal, source.top() * vertical, source.width() * horizontal,
                        source.height() * vertical);
    painter.setRenderHint(QPainter::SmoothPixmapTransform, m_scale < lowestBlockyScale);
    painter.drawPixmap(target, m_original, source);
}
