#pragma once

#include <QIcon>
#include <QWidget>

/** Paints one icon as large as the widget, sharp at any scale. Says nothing to screen readers. GUI thread. */
class CustomIconWidget : public QWidget
{
    Q_OBJECT

public:
    /** The side is that of the square which the widget asks for, in pixels. */
    explicit CustomIconWidget(const QIcon &icon, int side = 32, QWidget *parent = nullptr);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QIcon m_icon;
    int m_side;
};
