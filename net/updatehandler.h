#pragma once

#include <QObject>
#include <QString>

#include <memory>

class QFile;
class QNetworkAccessManager;
class QNetworkReply;
class QTemporaryDir;

/**
 * Asks the update server for the latest version and, when that is newer than the running one, offers it,
 * downloads it and hands it to the desktop. Nothing blocks and nothing is shown: who wants to tell the user
 * listens to the signals. Owned by the window; GUI thread.
 */
class UpdateHandler : public QObject
{
    Q_OBJECT

public:
    explicit UpdateHandler(QObject *parent = nullptr);
    /** Ends a download and removes what nobody has installed. */
    ~UpdateHandler() override;

    /** Whether a version lies there, complete. */
    bool hasNewVersion() const;

public slots:
    /** An earlier look that has not ended is given up. */
    void checkForUpdates();
    /** Gives up what checkForUpdates() has begun: nobody wants to know any more. */
    void stopChecking();
    /** Only sees whether the server answers; an earlier look of this kind is given up. */
    void checkConnection();
    /** Gets the version that was found last, if none is on its way. */
    void downloadLatest();
    /** Hands the downloaded version to who installs such files. False when nobody takes it, or it is gone. */
    bool installNewVersion();
    /** Gives a download up, without a word of it. */
    void cancel();
    /** Slots of the replies. */
    void lookAtLatestVersionString();
    void handleFinishedDownloading();
    void handleDownloadProgress(qlonglong received, qlonglong total);

signals:
    void checkingSucceeded(bool succeeded);
    /** After the former, for checkConnection() alone. */
    void connectionChecked(bool succeeded);
    void newVersionAvailable(bool available);
    /** In place of the former where the user wants updates to be downloaded without a question. */
    void getNewVersionNow();
    void downloadProgress(qlonglong received, qlonglong total);
    void newVersionDownloaded(bool succeeded);

private:
    /** Begins a request in the place of an earlier one. */
    void check(QNetworkReply *&place, bool isTest);
    void drop(QNetworkReply *&reply);
    void endCheck(bool isTest, bool succeeded);
    void offer(const QString &version);
    bool openFile();
    void keepReceived();
    bool isComplete(const QNetworkReply &reply) const;
    void discardFile();
    static void removeLeftovers();
    QNetworkAccessManager &network();

    QNetworkAccessManager *m_network = nullptr;
    QNetworkReply *m_check = nullptr;
    QNetworkReply *m_test = nullptr;
    QNetworkReply *m_download = nullptr;
    // Nobody else may put a file into the folder, or read it.
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<QFile> m_file;
    bool m_isKept = true;    // all that came so far
    QString m_latestVersion; // as "4.2.0", whatever stood between and around the numbers
};
