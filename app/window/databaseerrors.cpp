#include "app/window/databaseerrors.h"

#include "app/messages/messages.h"
#include "db/sql/sqliteerrors.h"

#include <QCoreApplication>
#include <QDebug>
#include <QMap>
#include <QSqlError>
#include <QWidget>

#include <algorithm>

namespace {
constexpr int openAnotherButton = 0;

/** What the database says itself, in a length that a box has room for. */
QString textOf(const QSqlError &error)
{
    constexpr int mostSigns = 1000;
    const QString text = error.databaseText().trimmed();
    return text.isEmpty() ? error.driverText().trimmed().left(mostSigns) : text.left(mostSigns);
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
    ++m_closings;
    m_notices.resize(m_isShowing ? 1 : 0);
}

void DatabaseErrors::report(const QSqlError &error, const QString &outcome)
{
    if (!error.isValid())
        return;
    qDebug() << "Database error:" << error;
    Notice notice{SqliteErrors::primaryCode(error), error.nativeErrorCode(), {}, outcome};
    const QString advised = advice(notice.number);
    notice.words = advised.isEmpty() ? textOf(error) : advised;
    if (isKnown(notice))
        return;
    m_notices.append(notice);
    if (!m_isShowing)
        m_errorTimer.start(0);
}

bool DatabaseErrors::isKnown(const Notice &notice) const
{
    return std::any_of(m_notices.cbegin(), m_notices.cend(), [&notice](const Notice &other) {
        // Texts of the same code differ in the rows that they name.
        const bool isSameCause =
            notice.code.isEmpty() ? notice.words == other.words : notice.code == other.code;
        return isSameCause && notice.outcome == other.outcome;
    });
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
    const int closings = m_closings;
    Messages::critical(m_window, tr("Connection problem"), tr("Could not connect to the database."));
    // Another database may be open by then.
    if (closings == m_closings)
        emit closeRequested();
}

QString DatabaseErrors::advice(int number)
{
    switch (number) {
    case SQLITE_PERM:
        return tr("This may be a result of the file permissions of the database file.");
    case SQLITE_READONLY:
        return tr("This may be a result of the permissions of the database file.");
    case SQLITE_IOERR:
        return tr("This is the result of a disk I/O error.");
    case SQLITE_CORRUPT:
        return tr("The database file may be corrupt.");
    case SQLITE_FULL:
        return tr("The database is full.");
    case SQLITE_CANTOPEN:
        return tr("The database file could not be opened.");
    case SQLITE_AUTH:
        return tr("This may be a result of authorization issues.");
    case SQLITE_NOTADB:
        return tr("The file opened is not a database file.");
    default:
        return {};
    }
}

void DatabaseErrors::show()
{
    const Notice notice = m_notices.constFirst();
    const bool mustEnd = notice.number == SQLITE_IOERR;
    int button = -1;
    m_isShowing = true;
    if (mustEnd) {
        button = askHowToGoOn(notice);
    } else {
        QString text = tr("An error has occurred accessing the database. ") + notice.words;
        if (!notice.outcome.isEmpty())
            text += QLatin1Char('\n') + notice.outcome;
        Messages::critical(m_window, tr("Error Accessing Database"), text);
    }
    m_isShowing = false;
    m_notices.removeFirst();
    if (!mustEnd) {
        if (!m_notices.isEmpty())
            m_errorTimer.start(0);
        return;
    }
    // The next database tells of errors of its own.
    m_notices.clear();
    if (button == openAnotherButton) {
        emit openAnotherRequested();
        return;
    }
    QCoreApplication::exit(0);
    emit closeRequested();
}

int DatabaseErrors::askHowToGoOn(const Notice &notice)
{
    Messages::Box box;
    box.icon = QMessageBox::Critical;
    box.title = tr("Error");
    box.text = tr("Application can't continue to work with the current database, due to error.\n"
                  "What do you want to do?");
    box.informativeText = notice.outcome;
    box.detailedText = notice.words;
    box.buttons = QMessageBox::NoButton;
    box.actions = QStringList{tr("Open another database"), tr("Exit application")};
    return Messages::run(m_window, box).action;
}
