#include "db/sql/serverwatch.h"

#include "app/settings/constants.h"
#include "app/settings/crashstack.h"

#include <QHash>
#include <QSqlDatabase>
#include <QSqlDriver>
#include <QVariant>

#include <libpq-fe.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <fcntl.h>
#include <mutex>
#include <string>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

namespace ServerWatch {
using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

/** One connection that is looked after. All but its constants is guarded by the watch's mutex. */
class Line
{
public:
    explicit Line(PGconn *connection);
    ~Line();
    Line(const Line &) = delete;
    Line &operator=(const Line &) = delete;

    /** What it takes to ask the same server whether it is there. */
    std::vector<std::string> keys;
    std::vector<std::string> values;
    /** A descriptor of our own: the driver's number may be another file's by the time it is needed. */
    const int socket;
    PGcancel *const cancel;

    int waiting = 0;
    Patience patience = Strict;
    Clock::time_point since;
    Clock::time_point canceledSince;
    bool isCanceled = false;
    bool isCancelSent = false; ///< and not answered
    bool isAsking = false;     ///< whether the server is there
};

namespace {
constexpr milliseconds tick(200);
/** A statement that goes by itself in this time needs no cancel. */
constexpr milliseconds cancelAfter(100);

Line *makeLine(const QSqlDatabase &database)
{
    const QVariant handle = database.driver()->handle();
    if (qstrcmp(handle.typeName(), "PGconn*") != 0)
        return nullptr;
    PGconn *connection = *static_cast<PGconn *const *>(handle.constData());
    return connection && PQsocket(connection) >= 0 ? new Line(connection) : nullptr;
}

/** The thread that looks, with all lines; it runs while there is one. */
class Watch
{
public:
    void add(const QString &name, const std::shared_ptr<Line> &line);
    void remove(const QString &name);
    std::shared_ptr<Line> line(const QString &name);
    void setCanceled(const QString &name, bool isCanceled);

    std::mutex mutex;
    std::atomic<int> lines{0};
    std::atomic<int> bound{15000};

private:
    void run();
    void look(const std::shared_ptr<Line> &line, Clock::time_point now);
    void sendCancel(const std::shared_ptr<Line> &line);
    void ask(const std::shared_ptr<Line> &line, int seconds);

    QHash<QString, std::shared_ptr<Line>> m_lines;
    std::condition_variable m_change;
    std::thread m_thread;
    bool m_isEnding = false;
};

Watch &watch()
{
    // Never destroyed: a thread that waits for a stopped server may outlive the end of main().
    static auto *instance = new Watch;
    return *instance;
}

void Watch::add(const QString &name, const std::shared_ptr<Line> &line)
{
    const std::lock_guard<std::mutex> lock(mutex);
    m_lines.insert(name, line);
    lines = m_lines.size();
    if (!m_thread.joinable())
        m_thread = std::thread(&Watch::run, this);
    m_change.notify_all();
}

void Watch::remove(const QString &name)
{
    const std::lock_guard<std::mutex> lock(mutex);
    m_lines.remove(name);
    lines = m_lines.size();
}

std::shared_ptr<Line> Watch::line(const QString &name)
{
    const std::lock_guard<std::mutex> lock(mutex);
    return m_lines.value(name);
}

void Watch::setCanceled(const QString &name, bool isCanceled)
{
    const std::lock_guard<std::mutex> lock(mutex);
    const std::shared_ptr<Line> line = m_lines.value(name);
    if (!line || line->isCanceled == isCanceled)
        return;
    line->isCanceled = isCanceled;
    line->canceledSince = Clock::now();
}

void Watch::run()
{
    provideCrashStack();
    std::unique_lock<std::mutex> lock(mutex);
    for (;;) {
        m_change.wait(lock, [this] { return !m_lines.isEmpty(); });
        m_change.wait_for(lock, tick);
        const Clock::time_point now = Clock::now();
        for (const std::shared_ptr<Line> &line : qAsConst(m_lines)) {
            if (line->waiting > 0)
                look(line, now);
        }
    }
}

void Watch::look(const std::shared_ptr<Line> &line, Clock::time_point now)
{
    const milliseconds most(bound);
    const auto silence = now - line->since;
    if (line->isCanceled && silence > cancelAfter && !line->isCancelSent)
        sendCancel(line);
    const bool isCancelIgnored = line->isCanceled && silence > most && now - line->canceledSince > most;
    if (line->patience == Patient && !isCancelIgnored) {
        // The last third of the time is for the answer.
        const milliseconds forAnswer = most / 3;
        if (silence > most - forAnswer && !line->isAsking) {
            line->isAsking = true;
            ask(line, std::max(2, int(forAnswer.count() / 1000)));
        }
    }
    if (silence > most) {
        ::shutdown(line->socket, SHUT_RDWR);
        line->since = now; // once is enough, should anything else stand in its way
    }
}

void Watch::sendCancel(const std::shared_ptr<Line> &line)
{
    line->isCancelSent = true;
    // By itself: it waits for the server, too.
    std::thread([this, line] {
        provideCrashStack();
        char error[256];
        PQcancel(line->cancel, error, sizeof error);
        const std::lock_guard<std::mutex> lock(mutex);
        line->isCancelSent = false;
    }).detach();
}

void Watch::ask(const std::shared_ptr<Line> &line, int seconds)
{
    std::thread([this, line, seconds] {
        provideCrashStack();
        std::vector<const char *> keys;
        std::vector<const char *> values;
        for (const std::string &key : line->keys)
            keys.push_back(key.c_str());
        for (const std::string &value : line->values)
            values.push_back(value.c_str());
        const std::string patience = std::to_string(seconds);
        keys.insert(keys.end(), {"connect_timeout", nullptr});
        values.insert(values.end(), {patience.c_str(), nullptr});
        const PGPing answer = PQpingParams(keys.data(), values.data(), 0);
        const std::lock_guard<std::mutex> lock(mutex);
        line->isAsking = false;
        if (answer == PQPING_OK || answer == PQPING_REJECT)
            line->since = Clock::now();
    }).detach();
}
} // namespace

Line::Line(PGconn *connection)
    : socket(fcntl(PQsocket(connection), F_DUPFD_CLOEXEC, 0)), cancel(PQgetCancel(connection))
{
    PQconninfoOption *options = PQconninfo(connection);
    for (const PQconninfoOption *option = options; option && option->keyword; ++option) {
        // What a session is like has no part in whether there can be one.
        static const std::vector<std::string> kept{"host", "hostaddr", "port", "dbname", "user", "sslmode"};
        if (!option->val || std::find(kept.cbegin(), kept.cend(), option->keyword) == kept.cend())
            continue;
        keys.emplace_back(option->keyword);
        values.emplace_back(option->val);
    }
    PQconninfoFree(options);
}

Line::~Line()
{
    PQfreeCancel(cancel);
    ::close(socket);
}

void add(const QSqlDatabase &database)
{
    if (database.driverName() != Constants::postgresDriver)
        return;
    if (Line *line = makeLine(database))
        watch().add(database.connectionName(), std::shared_ptr<Line>(line));
}

void remove(const QString &connectionName)
{
    if (watch().lines > 0)
        watch().remove(connectionName);
}

void setCanceled(const QString &connectionName, bool isCanceled)
{
    if (watch().lines > 0)
        watch().setCanceled(connectionName, isCanceled);
}

void setBound(int milliseconds)
{
    watch().bound = milliseconds;
}

Waiting::Waiting(const QSqlDatabase &database, Patience patience)
{
    // Statements on local databases come by the million.
    if (watch().lines == 0 || database.driverName() != Constants::postgresDriver)
        return;
    m_line = watch().line(database.connectionName());
    if (!m_line)
        return;
    const std::lock_guard<std::mutex> lock(watch().mutex);
    m_outerPatience = std::exchange(m_line->patience, patience);
    m_line->since = Clock::now();
    ++m_line->waiting;
}

Waiting::~Waiting()
{
    if (!m_line)
        return;
    const std::lock_guard<std::mutex> lock(watch().mutex);
    m_line->patience = m_outerPatience;
    m_line->since = Clock::now();
    --m_line->waiting;
}

void Waiting::gotAnswer()
{
    if (!m_line)
        return;
    const std::lock_guard<std::mutex> lock(watch().mutex);
    m_line->since = Clock::now();
}
} // namespace ServerWatch
