#pragma once

#include <QCheckBox>

class QStyleOptionButton;

/** A check box whose text goes on in further lines where it is wider than the box. */
class WrappedCheckBox : public QCheckBox
{
    Q_OBJECT

public:
    explicit WrappedCheckBox(QWidget *parent = nullptr);

    /** In one line. */
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    int heightForWidth(int width) const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    bool hitButton(const QPoint &position) const override;

private:
    QStyleOptionButton option() const;
    /** What a text of this width leaves out: the box itself and the room around. */
    int indicatorRoom() const;
    /** The width of a text that is to be had in one line, or its height in lines of that width. */
    QSize textSize(int width) const;
};
