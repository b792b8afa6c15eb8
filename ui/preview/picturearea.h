#pragma once

#include <QImage>
#include <QScrollArea>

class FilePreview;

/**
 * The picture of the previewer in the room of its window. A picture is fitted by halves when it comes, or to
 * the room on demand, and as long as it is not zoomed follows the size of the window. The wheel zooms at the
 * pointer, a drag moves the picture. Takes no focus. GUI thread.
 */
class PictureArea : public QScrollArea
{
    Q_OBJECT

public:
    explicit PictureArea(QWidget *parent = nullptr);

    void showPicture(const QImage &picture);
    /** The same picture turned: as large as before, or fitted when it was. */
    void showTurned(const QImage &picture);
    void showMessage(const QString &text);
    double scale() const;
    /** Black and without scroll bars for the full screen, or as all windows are. */
    void setBlack(bool black);

public slots:
    /** Fills the room as far as the picture goes without being enlarged. */
    void fit();
    void zoomIn();
    void zoomOut();
    void zoom100();

signals:
    void scaleChanged(double scale);

protected:
    void resizeEvent(QResizeEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    enum class Fitting { Halved, Filling, None };

    void refit();
    void applyScale(double scale);
    /** The point of the viewport stays over the same point of the picture. */
    void zoomAt(const QPointF &point, double scale);
    QPointF centre() const;
    bool isLargerThanRoom() const;
    void updateCursor();

    FilePreview *m_preview;
    Fitting m_fitting = Fitting::Halved;
    bool m_isDragged = false;
    QPoint m_dragPoint;
};
