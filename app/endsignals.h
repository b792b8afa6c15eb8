#pragma once

#include <QObject>

class QSocketNotifier;

/**
 * Turns the signals that end a program, those of a terminal that goes and of a system that shuts down among
 * them, and the end of the desktop's session into the closing of all windows, as a person would do it: what
 * is typed, the layout and the database are seen to. Lives in main(), one for the process, GUI thread.
 */
class EndSignals : public QObject
{
    Q_OBJECT

public:
    explicit EndSignals(QObject *parent = nullptr);
    ~EndSignals() override;

private:
    void takeSignal();
    /** Closes what is open, and asks again while something refuses: a running operation ends first. */
    void closeWindows();

    QSocketNotifier *m_notifier = nullptr;
    int m_tries = 0;
};
