#pragma once

#include <QAction>
#include <QToolBar>

/**
 * The tool bar of the previewer: the ways through the pictures, turning, the show, and the offer to save what
 * was turned.
 */
class NavigationBar : public QToolBar
{
    Q_OBJECT

public:
    explicit NavigationBar(QWidget *parent);

    void setSavingOffered(bool isOffered) { m_savingAction->setVisible(isOffered); }

signals:
    void previousRequested();
    void nextRequested();
    void anticlockwiseRequested();
    void clockwiseRequested();
    void fullScreenRequested();
    void slideshowRequested();
    void savingRequested();
    void cancelRequested();

private:
    void addSavingOffer();

    QAction *m_savingAction = nullptr;
};
