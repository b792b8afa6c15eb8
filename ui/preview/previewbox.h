#pragma once

#include "ui/preview/fullscreen.h"

#include <QElapsedTimer>
#include <QMainWindow>
#include <QPointer>
#include <QTimer>

#include <memory>

class DescriptionBar;
class FileTagging;
class ImageLoading;
class ImageWalk;
class LoadingNotice;
class MainViewController;
class NavigationBar;
class PictureArea;
class PictureEdit;
class SlideTimer;
class StayingOnTop;
class Sorter;

/**
 * A window of its own that shows one picture of the main view at a time: walks through them, zooms, turns,
 * saves what was turned, edits the description and runs a slide show. It belongs to the database that its
 * file is in and must go before the controller does. GUI thread.
 */
class PreviewBox : public QMainWindow
{
    Q_OBJECT

public:
    /** Begins to load the picture; a failure is told later. Model and controller are borrowed. */
    PreviewBox(qint64 fileId, const Sorter *model, MainViewController *controller, QWidget *parent = nullptr);
    /** Saves the description and a waiting rotation; no box tells of a failure any more. */
    ~PreviewBox() override;

    /**
     * Saves the description and a waiting rotation, before the window goes on or closes. False when that
     * failed: the picture stays, with the offer to save or to cancel, and the user knows.
     */
    bool saveWaiting();
    /** Takes over what the user has just set. */
    void readSettings();
    /** The window that it was opened from, which is borrowed: to be above is at least to be above that one.
     */
    void setOrigin(QWidget *origin);

    /** The file on show. */
    qint64 fileId() const { return m_fileId; }

signals:
    void showingFile(qlonglong fileId);
    void changedThumbnail(qlonglong fileId);

public slots:
    void prevImage();
    void nextImage();
    /** Loads the picture anew: a rotation that was not saved is gone. */
    void refresh();
    void rotateClockwise();
    void rotateAnticlockwise();
    void zoom100();
    /** Writes the turned picture back. A failure, which changes nothing, is told. */
    void applyEdit();
    void hideApplyEditButtons();
    void startSlideshow();
    /** Ends the full screen, too, and keeps the window. */
    void finishSlideshow();
    void goFullScreen();
    void commitDescription();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void changeEvent(QEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    using Step = qint64 (ImageWalk::*)();
    enum class Telling { Aloud, InTheLog };

    void connectToolBar();
    void connectAll();
    void takeTagging();
    void placeWindow();

    void walk(Step step);
    void stepOn();
    /** The picture comes later, from another process; the window stays as it is till then. */
    void loadImage(qint64 fileId);
    void beginLoading();
    void endLoading();
    void cancelLoading();
    void showLoaded();
    void tellLoadFailure(int state);
    void tellFailure(const QString &title, const QString &text);
    void rotate(int quarters);
    void offerSaving();
    bool saveEdit(Telling telling);
    void cancelEdit();
    void leaveFullScreen();
    /** Shows the picture alone, on black. */
    void setBare(bool isBare);
    void followRecord();
    void updateTitle();
    bool isWritable() const;

    qint64 m_fileId = 0;
    const QPointer<MainViewController> m_controller;
    ImageWalk *m_walk;
    Step m_step = nullptr; // of the walk that goes on
    qint64 m_stepStart = 0;
    QElapsedTimer m_stepTime;
    PictureArea *m_area;
    LoadingNotice *m_notice;
    std::unique_ptr<ImageLoading> m_loading; // while a picture is awaited
    NavigationBar *m_toolBar;
    DescriptionBar *m_description;
    FileTagging *m_tagging;
    PictureEdit *m_edit;
    int m_awaitedQuarters = 0; // by which a picture on its way is to be turned
    // A text that could not be saved is offered until it is saved or cancelled.
    bool m_isDescriptionKeptBack = false;
    SlideTimer *m_slideTimer;
    StayingOnTop *m_onTop;
    FullScreen m_fullScreen;
    QTimer m_following;
    QTimer m_retry; // of a picture that met a lock
};
