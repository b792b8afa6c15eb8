#pragma once

#include <QAction>
#include <QToolBar>

/**
 * The tool bar of the previewer: the ways through the pictures, turning, the show, the scale, and the offer
 * to save what was turned.
 */
class NavigationBar : public QToolBar
{
    Q_OBJECT

public:
    explicit NavigationBar(QWidget *parent);

    /** Those that have keys, for the window, as a bar that is hidden hears no key. */
    QList<QAction *> keyActions() const { return m_keyActions; }
    void setSavingOffered(bool isOffered) { m_savingAction->setVisible(isOffered); }

signals:
    void previousRequested();
    void nextRequested();
    void anticlockwiseRequested();
    void clockwiseRequested();
    void fullScreenRequested();
    void slideshowRequested();
    void zoomInRequested();
    void zoomOutRequested();
    void originalSizeRequested();
    void fitRequested();
    void savingRequested();
    void cancelRequested();

private:
    using Request = void (NavigationBar::*)();

    void add(const QString &text, const char *icon, Request request, const QList<QKeySequence> &keys = {});
    void addZoom();
    void addSavingOffer();

    QList<QAction *> m_keyActions;
    QAction *m_savingAction = nullptr;
};
