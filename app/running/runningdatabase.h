#pragma once

#include <QObject>
#include <QString>

/**
 * Answers on the session bus for the database that the window has open: a second start with the same file has
 * the window come forward in place of opening it once more. Without a bus nobody asks. Lives in main(), one
 * for the process, GUI thread; the bus gives its names back when the process ends, in whatever way.
 */
class RunningDatabase : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.tallowfen.vorna.Database")

public:
    explicit RunningDatabase(QObject *parent = nullptr);
    ~RunningDatabase() override;

    /** What is open from now on; an empty path for none. */
    void setDatabase(const QString &path);

    /**
     * Called by a second start. False when the database of that name is no longer open; otherwise the window
     * is asked to come forward and, given the path of a shell, to import it.
     */
    Q_SCRIPTABLE bool showWindow(const QString &name, const QString &shellPath);

signals:
    void windowRequested(const QString &shellPath);

private:
    QString m_name;
};
