#include "tools/makedemo/demopainter.h"

#include <QPainter>
#include <QPainterPath>
#include <QRandomGenerator>
#include <QtMath>

#include <array>

namespace {

using DemoContents::Picture;

constexpr int width = 640;
constexpr int height = 420;

/** The same numbers for the same name on every machine. */
QRandomGenerator numbersFor(const QString &name)
{
    quint32 seed = 2166136261U; // FNV-1a
    for (const QChar c : name)
        seed = (seed ^ c.unicode()) * 16777619U;
    QRandomGenerator numbers(seed);
    numbers.discard(8);
    return numbers;
}

QColor shade(double hue, double saturation, double value)
{
    return QColor::fromHsvF(hue - qFloor(hue), saturation, value);
}

void paintLandscape(QPainter &painter, QRandomGenerator &numbers)
{
    const double hue = 0.52 + numbers.generateDouble() * 0.5;
    QLinearGradient sky(0, 0, 0, height);
    sky.setColorAt(0, shade(hue, 0.45, 0.75));
    sky.setColorAt(1, shade(hue + 0.08, 0.15, 0.98));
    painter.fillRect(0, 0, width, height, sky);
    painter.setBrush(QColor(255, 245, 215, 220));
    painter.drawEllipse(QPointF(90 + numbers.bounded(460), 60 + numbers.bounded(80)), 32, 32);

    constexpr int layers = 5;
    for (int layer = 0; layer < layers; ++layer) {
        const double base = height * (0.45 + 0.12 * layer);
        const double phase = numbers.generateDouble() * 6;
        const double swing = 70.0 / (layer + 1) + numbers.bounded(22);
        QPainterPath hills(QPointF(0, height));
        for (int x = 0; x <= width; x += 8) {
            const double wave = qSin(x / (60.0 + 35 * layer) + phase) + 0.4 * qSin(x / 23.0 + phase * 2);
            hills.lineTo(x, base - swing * wave * 0.5);
        }
        hills.lineTo(width, height);
        painter.setBrush(shade(hue - 0.18, 0.25 + 0.1 * layer, 0.8 - 0.12 * layer));
        painter.drawPath(hills);
    }
}

void paintFlower(QPainter &painter, QRandomGenerator &numbers)
{
    painter.fillRect(0, 0, width, height, shade(0.26, 0.12 + numbers.generateDouble() * 0.12, 0.93));
    const QPointF centre(width / 2.0, height * 0.44);
    painter.setPen(QPen(shade(0.3, 0.6, 0.5), 12, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(centre, QPointF(width / 2.0 + numbers.bounded(60) - 30, height));
    painter.setPen(Qt::NoPen);

    // Around the red end of the circle, so that no flower is as green as its stem.
    const double hue = 0.55 + numbers.generateDouble() * 0.62;
    const int petals = 6 + numbers.bounded(9);
    for (int ring = 0; ring < 2; ++ring) {
        const double length = ring == 0 ? 140 : 96;
        painter.setBrush(shade(hue + 0.03 * ring, 0.6 - 0.15 * ring, 0.85 + 0.12 * ring));
        for (int petal = 0; petal < petals; ++petal) {
            painter.save();
            painter.translate(centre);
            painter.rotate(360.0 / petals * (petal + ring * 0.5));
            painter.drawEllipse(QPointF(0, -length / 2), 280.0 / petals, length / 2);
            painter.restore();
        }
    }
    painter.setBrush(shade(0.12, 0.75, 0.95));
    painter.drawEllipse(centre, 34, 34);
}

void paintPattern(QPainter &painter, QRandomGenerator &numbers)
{
    const double hue = numbers.generateDouble();
    const std::array<QColor, 4> colours{shade(hue, 0.5, 0.85), shade(hue + 0.08, 0.35, 0.95),
                                        shade(hue + 0.5, 0.4, 0.7), QColor(250, 246, 236)};
    painter.fillRect(0, 0, width, height, colours[3]);
    const int cell = 36 + 6 * numbers.bounded(6);
    const int kind = numbers.bounded(3);
    for (int y = 0; y * cell < height; ++y) {
        for (int x = 0; x * cell < width; ++x) {
            const QRectF box(x * cell, y * cell, cell, cell);
            painter.setBrush(colours[static_cast<std::size_t>((x + 2 * y) % 3)]);
            if (kind == 0)
                painter.drawEllipse(box.adjusted(4, 4, -4, -4));
            else if (kind == 1)
                painter.drawPolygon(QPolygonF({box.bottomLeft(), box.topLeft(), box.topRight()}));
            else
                painter.drawPie(box.adjusted(-cell / 3.0, 0, 0, cell / 3.0), (x + y) % 4 * 90 * 16, 90 * 16);
        }
    }
}

void paintPlan(QPainter &painter, QRandomGenerator &numbers)
{
    painter.fillRect(0, 0, width, height, QColor(37, 74, 110));
    painter.setPen(QColor(255, 255, 255, 40));
    for (int x = 0; x < width; x += 20)
        painter.drawLine(x, 0, x, height);
    for (int y = 0; y < height; y += 20)
        painter.drawLine(0, y, width, y);

    painter.setPen(QPen(QColor(235, 243, 250), 3));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(80, 60, width - 160, height - 120);
    const int shelf = 90 + numbers.bounded(height - 180);
    painter.drawLine(80, shelf, width - 80, shelf);
    const int parts = 3 + numbers.bounded(4);
    for (int part = 1; part < parts; ++part) {
        const int x = 80 + (width - 160) * part / parts;
        painter.drawLine(x, 60, x, height - 60);
        if (numbers.bounded(2) == 0)
            painter.drawEllipse(QPoint(x - (width - 160) / parts / 2, height / 2), 26, 26);
        else
            painter.drawLine(x - (width - 160) / parts, height / 2 + numbers.bounded(60) - 30, x, height / 2);
    }
    painter.setPen(QPen(QColor(250, 205, 120), 2));
    painter.drawLine(80, height - 34, width - 80, height - 34);
    painter.drawLine(80, height - 42, 80, height - 26);
    painter.drawLine(width - 80, height - 42, width - 80, height - 26);
}

} // namespace

QImage paintDemoPicture(const Picture &picture)
{
    QImage image(width, height, QImage::Format_RGB32);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    QRandomGenerator numbers = numbersFor(picture.name);
    switch (picture.motif) {
    case Picture::Landscape:
        paintLandscape(painter, numbers);
        break;
    case Picture::Flower:
        paintFlower(painter, numbers);
        break;
    case Picture::Pattern:
        paintPattern(painter, numbers);
        break;
    case Picture::Plan:
        paintPlan(painter, numbers);
        break;
    }
    return image;
}
