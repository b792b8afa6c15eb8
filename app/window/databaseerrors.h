#pragma once

#include <QObject>
#include <QTimer>
#include <QVector>

class QSqlError;
class QWidget;

/**
 * Turns the errors of an open database into boxes, from the event loop and one after the other. What comes of
 * the same cause while its box waits or is shown only reaches the log. A box that is still to come goes with
 * its database. Owned by the main window.
 */
class DatabaseErrors : public QObject
{
    Q_OBJECT

public:
    explicit DatabaseErrors(QWidget *window);

    /** An operation of files tells how far it came, too. */
    void report(const QSqlError &error, const QString &outcome = QString());
    /** Shows its box and asks for the end of the database, once until databaseClosed(). */
    void reportConnectionLoss();
    void databaseClosed();

signals:
    void openAnotherRequested();
    void closeRequested();

private:
    struct Notice
    {
        int number = 0; ///< of SQLite
        QString code;   ///< the back-end's own
        QString words;
        QString outcome;
    };
    bool isKnown(const Notice &notice) const;
    /** What a person can make of an error number of SQLite; empty for numbers without advice. */
    static QString advice(int number);
    void show();
    void showConnectionLoss();
    /** The index of the chosen button. */
    int askHowToGoOn(const Notice &notice);

    QWidget *m_window;
    QTimer m_errorTimer;
    QTimer m_lossTimer;
    QVector<Notice> m_notices; ///< the first is the next, or the one that is shown
    bool m_isShowing = false;
    bool m_isConnectionLost = false;
    int m_closings = 0;
};
