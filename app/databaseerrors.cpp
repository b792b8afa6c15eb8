#include "app/databaseerrors.h"

#include "app/messages.h"

#include <QCoreApplication>
#include <QDebug>
#include <QMap>
#include <QSqlError>
#include <QWidget>

namespace {
constexpr int diskError = 10;
constexpr int openAnotherButton = 0;

/** The primary result code of SQLite; 0 for an error of a server, whose codes are five signs long. */
int resultCode(const QSqlError &error)
{
    const QString code = error.nativeErrorCode();
    // The low byte is the primary code, whether or not the driver reports extended ones.
    return code.size() < 5 ? code.toInt() & 0xff : 0;
}
} // namespace

DatabaseErrors::DatabaseErrors(QWidget *window) : QObject(window), m_window(window)
{
    m_errorTimer.setSingleShot(true);
    m_lossTimer.setSingleShot(true);
    connect(&m_errorTimer, &QTimer::timeout, this, &DatabaseErrors::show);
    connect(&m_lossTimer, &QTimer::timeout, this, &DatabaseErrors::showConnectionLoss);
}

void DatabaseErrors::databaseClosed()
{
    m_errorTimer.stop();
    m_lossTimer.stop();
    m_isConnectionLost = false;
}

void DatabaseErrors::report(const QSqlError &error)
{
    if (!error.isValid())
        return;
    qDebug() << "Database error:" << error;
    const int number = resultCode(error);
    if (advice(number).isEmpty() || m_isShowing || m_errorTimer.isActive())
        return;
    m_number = number;
    m_errorTimer.start(0);
}

void DatabaseErrors::reportConnectionLoss()
{
    if (m_isConnectionLost)
        return;
    m_isConnectionLost = true;
    m_lossTimer.start(0);
}

void DatabaseErrors::showConnectionLoss()
{
    Messages::critical(m_window, tr("Connection problem"), tr("Could not connect to the database."));
    emit closeRequested();
}

QString DatabaseErrors::advice(int number)
{
    switch (number) {
    case 3:
        return tr("This may be a result of the file permissions of the database file.");
    case 8:
        return tr("This may be a result of the permissions of the database file.");
    case diskError:
        return tr("This is the result of a disk I/O error.");
    case 11:
        return tr("The database file may be corrupt.");
    case 13:
        return tr("The database is full.");
    case 14:
        return tr("The database file could not be opened.");
    case 23:
        return tr("This may be a result of authorization issues.");
    case 26:
        return tr("The file opened is not a database file.");
    default:
        return {};
    }
}

void DatabaseErrors::show()
{
    const QString text = advice(m_number);
    m_isShowing = true;
    if (m_number != diskError) {
        Messages::critical(m_window, tr("Error Accessing Database"),
                           tr("An error has occurred accessing the database. ") + text);
        m_isShowing = false;
        return;
    }
    const int button = askHowToGoOn(text);
    // The next database tells of errors of its own.
    m_isShowing = false;
    if (button == openAnotherButton) {
        emit openAnotherRequested();
        return;
    }
    QCoreApplication::exit(0);
    emit closeRequested();
}

int DatabaseErrors::askHowToGoOn(const QString &advice)
{
    Messages::Box box;
    box.icon = QMessageBox::Critical;
    box.title = tr("Error");
    box.text = tr("Application can't continue to work with the current database, due to error.\n"
                  "What do you want to do?");
    box.detailedText = advice;
    box.buttons = QMessageBox::NoButton;
    box.actions = QStringList{tr("Open another database"), tr("Exit application")};
    return Messages::run(m_window, box).action;
}
