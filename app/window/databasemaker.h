#pragma once

#include "app/settings/dbdetails.h"

#include <QObject>

#include <functional>

class QWidget;
class ReplacedFile;

/**
 * Makes new local databases: asks for the place, makes room there, and has the new one opened. What fails is
 * told, and a file that stood in the place stands there again. Owned by the window, above which its boxes
 * stand.
 */
class DatabaseMaker : public QObject
{
    Q_OBJECT

public:
    enum Outcome { Made, NotMade, NotOpened };

    /** What opens a database, false for a failure, and what names the open one, empty for none. */
    DatabaseMaker(std::function<bool(const DBDetails &)> open, std::function<QString()> openName,
                  QWidget *window);

    Outcome make();

private:
    bool isOpen(const QString &path) const;
    /** False when a file that is there may not or cannot be replaced; the user knows why. */
    bool makeRoom(ReplacedFile &replaced, const QString &path, bool mustAsk);
    Outcome create(const QString &path);

    const std::function<bool(const DBDetails &)> m_open;
    const std::function<QString()> m_openName;
    QWidget *m_window;
};
