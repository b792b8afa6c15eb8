#pragma once

#include <QObject>

class MainUi;
class QAction;
class QProgressBar;
class UpdateHandler;

/**
 * What the window shows of new versions, at the end of the search bar: the offer, the progress of a download
 * and a way to end it, and the installation. Owned by the window; GUI thread.
 */
class UpdateBar : public QObject
{
    Q_OBJECT

public:
    explicit UpdateBar(QWidget *window);

    UpdateHandler *handler() const { return m_handler; }
    /** After the search has taken its places. */
    void takePlaces(MainUi &ui);
    /** At the start and when the user has set them: looks for a new version where that has been switched on.
     */
    void readSettings();

public slots:
    void getLatest();
    void stopDownload();
    /** Asks whether the program may end for it. */
    void installNewVersion();
    void newVersionDownloaded(bool succeeded);
    void showDownloadProgress(qlonglong received, qlonglong total);

private:
    void showDownloading(bool isDownloading);

    QWidget *m_window;
    UpdateHandler *m_handler;
    QAction *m_offer;
    QAction *m_install;
    QAction *m_cancel;
    QAction *m_progress = nullptr; // stands for the label and the bar
    QProgressBar *m_progressBar = nullptr;
    bool m_isChecking = false;
};
