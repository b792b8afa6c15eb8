#pragma once

#include <QObject>
#include <QTimer>

class QSqlError;
class QWidget;

/**
 * Turns the errors of an open database into boxes. The first error shows its box from the event loop, further
 * ones only reach the log until that box is closed. A box that is still to come goes with its database. Owned
 * by the main window.
 */
class DatabaseErrors : public QObject
{
    Q_OBJECT

public:
    explicit DatabaseErrors(QWidget *window);

    void report(const QSqlError &error);
    /** Shows its box and asks for the end of the database, once until databaseClosed(). */
    void reportConnectionLoss();
    void databaseClosed();

signals:
    void openAnotherRequested();
    void closeRequested();

private:
    /** What a person can make of an error number of SQLite; empty for numbers without advice. */
    static QString advice(int number);
    void show();
    void showConnectionLoss();
    /** The index of the chosen button. */
    int askHowToGoOn(const QString &advice);

    QWidget *m_window;
    QTimer m_errorTimer;
    QTimer m_lossTimer;
    int m_number = 0;
    bool m_isShowing = false;
    bool m_isConnectionLost = false;
};
