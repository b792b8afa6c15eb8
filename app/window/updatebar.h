#pragma once

#include <QObject>

class MainUi;
class QAction;
class QMainWindow;
class QProgressBar;
class QToolBar;
class UpdateHandler;

/**
 * What the window shows of new versions, at the end of the search bar: the offer, the progress of a download
 * and a way to end it, and the installation. Owned by the window; GUI thread.
 */
class UpdateBar : public QObject
{
    Q_OBJECT

public:
    explicit UpdateBar(QMainWindow *window);

    UpdateHandler *handler() const { return m_handler; }
    /** After the search has taken its places. */
    void takePlaces(MainUi &ui);
    /** Before the window stores its layout, to which a row of its own does not belong. */
    void giveRowBack();
    /** At the start and when the user has set them: looks for a new version where that has been switched on.
     */
    void readSettings();

    bool eventFilter(QObject *watched, QEvent *event) override;

public slots:
    void getLatest();
    void stopDownload();
    /** Asks whether the program may end for it. */
    void installNewVersion();
    void newVersionDownloaded(bool succeeded);
    void showDownloadProgress(qlonglong received, qlonglong total);

private:
    void showDownloading(bool isDownloading);
    /** A narrow window gives the bar a row of its own, as it would hide behind a small arrow what is new. */
    void makeRoom();

    QMainWindow *m_window;
    UpdateHandler *m_handler;
    QAction *m_offer;
    QAction *m_install;
    QAction *m_cancel;
    QAction *m_progress = nullptr; // stands for the label and the bar
    QProgressBar *m_progressBar = nullptr;
    QToolBar *m_bar = nullptr;
    bool m_hasRow = false;
    bool m_isChecking = false;
    bool m_isAutomatic = false;
};
