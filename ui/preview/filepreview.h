#pragma once

#include <QImage>
#include <QLabel>
#include <QPixmap>
#include <QTimer>

/**
 * The picture of the previewer, as large as its scale makes it. The original stays in memory once, in full
 * size. Far below it a scaled copy is shown, and otherwise the visible part is painted straight from the
 * original, so that no zoom ever needs a pixmap of its size. GUI thread.
 */
class FilePreview : public QLabel
{
    Q_OBJECT

public:
    explicit FilePreview(QWidget *parent = nullptr);

    void setPicture(const QImage &picture);
    /** In place of a picture. */
    void setMessage(const QString &text);
    bool hasPicture() const { return !m_original.isNull(); }
    QSize pictureSize() const { return m_original.size(); }

    double scale() const { return m_scale; }
    /** Takes the size of the picture at this scale. */
    void setScale(double scale);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    bool isFarBelowOriginal() const;
    QSize shownPixels() const;
    void makeShown();
    void paintPart(QPainter &painter, const QRect &exposed) const;

    QPixmap m_original;
    QPixmap m_shown; // null while the original is painted
    double m_scale = 1;
    QTimer m_refining;
};
