#include "app/endsignals.h"

#include <QApplication>
#include <QMainWindow>
#include <QSocketNotifier>
#include <QTimer>
#include <QWidget>

#include <algorithm>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>
#include <utility>

namespace {
constexpr int endingSignals[] = {SIGTERM, SIGINT, SIGHUP};
constexpr int retryMilliseconds = 100;
// A box without a way out must not keep a system from shutting down, which waits for about as long.
constexpr int mostTries = 50;

// A handler may do no more than write to a pipe, whose other end the event loop watches.
int pipeEnds[2] = {-1, -1};

extern "C" void noteSignal(int)
{
    const char byte = 0;
    static_cast<void>(!write(pipeEnds[1], &byte, 1));
}

/** A program started by nohup, or in the background of a shell, is to outlive them. */
bool isIgnored(int number)
{
    struct sigaction action
    {
    };
    return sigaction(number, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

// First of all, as their docks that float are windows too, which they are to find as they were. What is modal
// to them is asked before, as ever.
void closeMainWindows()
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget *window : windows) {
        if (!QApplication::activeModalWidget() && qobject_cast<QMainWindow *>(window) && window->isVisible())
            window->close();
    }
}

bool isWindowOpen()
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    return std::any_of(windows.cbegin(), windows.cend(), [](const QWidget *window) {
        return window->isVisible() && window->windowType() != Qt::ToolTip &&
               window->windowType() != Qt::SplashScreen;
    });
}
} // namespace

EndSignals::EndSignals(QObject *parent) : QObject(parent)
{
    connect(
        qApp, &QGuiApplication::commitDataRequest, this, [this] { closeWindows(); }, Qt::DirectConnection);
    if (pipe2(pipeEnds, O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    m_notifier = new QSocketNotifier(pipeEnds[0], QSocketNotifier::Read, this);
    connect(m_notifier, &QSocketNotifier::activated, this, &EndSignals::takeSignal);
    struct sigaction action
    {
    };
    action.sa_handler = noteSignal;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    for (const int number : endingSignals) {
        if (!isIgnored(number))
            sigaction(number, &action, nullptr);
    }
}

EndSignals::~EndSignals()
{
    // From here on nobody would hear them.
    for (const int number : endingSignals) {
        if (!isIgnored(number))
            std::signal(number, SIG_DFL);
    }
    for (int &end : pipeEnds)
        ::close(std::exchange(end, -1));
}

void EndSignals::takeSignal()
{
    char bytes[16];
    static_cast<void>(!read(pipeEnds[0], bytes, sizeof bytes));
    closeWindows();
}

void EndSignals::closeWindows()
{
    closeMainWindows();
    QApplication::closeAllWindows();
    if (!isWindowOpen())
        QCoreApplication::quit();
    else if (++m_tries >= mostTries)
        QCoreApplication::exit(0);
    // Until it has ended: behind a box at the start the main loop does not turn yet, and would not hear of
    // it.
    QTimer::singleShot(retryMilliseconds, this, &EndSignals::closeWindows);
}
