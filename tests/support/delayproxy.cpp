#include "tests/support/delayproxy.h"

#include <QByteArray>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <deque>
#include <list>
#include <thread>
#include <vector>

namespace {
using Clock = std::chrono::steady_clock;
/** What may be on its way at once: a wire that is fast enough for anybody. */
constexpr qint64 mostOnTheWay = 16 * 1024 * 1024;

sockaddr_in localAddress(int port)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(quint16(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

int newSocket()
{
    const int descriptor = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (descriptor < 0)
        qFatal("no socket");
    return descriptor;
}

void sendAtOnce(int descriptor)
{
    const int on = 1;
    ::setsockopt(descriptor, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
}

struct Parcel
{
    Clock::time_point due;
    QByteArray bytes; ///< empty: the sender has closed
};

/** One way through: from one socket to the other. */
struct Way
{
    int from;
    int to;
    std::deque<Parcel> parcels;
    qint64 bytes = 0;
    bool isClosed = false; ///< nothing comes any more
};

struct Line
{
    std::array<Way, 2> ways; ///< from the client, from the server
    bool isAsking = false;   ///< the last word was the client's
    bool isBroken = false;

    bool isDone() const
    {
        return isBroken ||
               (ways[0].isClosed && ways[1].isClosed && ways[0].parcels.empty() && ways[1].parcels.empty());
    }
};
} // namespace

class DelayProxy::Loop
{
public:
    Loop(int serverPort, double delayMilliseconds)
        : m_server(localAddress(serverPort)),
          m_delay(std::chrono::duration_cast<Clock::duration>(
              std::chrono::duration<double, std::milli>(delayMilliseconds)))
    {
        const sockaddr_in any = localAddress(0);
        sockaddr_in own{};
        socklen_t length = sizeof own;
        m_listener = newSocket();
        if (::bind(m_listener, reinterpret_cast<const sockaddr *>(&any), sizeof any) != 0 ||
            ::listen(m_listener, 64) != 0 ||
            ::getsockname(m_listener, reinterpret_cast<sockaddr *>(&own), &length) != 0 ||
            ::pipe(m_end.data()) != 0)
            qFatal("no place to listen");
        m_port = ntohs(own.sin_port);
        m_thread = std::thread([this] { run(); });
    }
    ~Loop()
    {
        ::close(m_end[1]);
        m_thread.join();
        ::close(m_end[0]);
        ::close(m_listener);
        for (Line &line : m_lines)
            drop(line);
    }
    Loop(const Loop &) = delete;
    Loop &operator=(const Loop &) = delete;

    int port() const { return m_port; }

    std::atomic<qint64> roundTrips{0};

private:
    void run()
    {
        while (wait()) {
            for (Line &line : m_lines) {
                for (Way &way : line.ways)
                    deliver(way, line);
            }
            m_lines.remove_if([](Line &line) {
                if (line.isDone())
                    drop(line);
                return line.isDone();
            });
        }
    }

    /** Until something comes or is due; takes what has come. False at the end. */
    bool wait()
    {
        std::vector<pollfd> places{{m_end[0], POLLIN, 0}, {m_listener, POLLIN, 0}};
        Clock::time_point next = Clock::now() + std::chrono::seconds(1);
        for (const Line &line : m_lines) {
            for (const Way &way : line.ways) {
                const bool isOpen = !way.isClosed && way.bytes < mostOnTheWay;
                places.push_back({isOpen ? way.from : -1, POLLIN, 0});
                if (!way.parcels.empty())
                    next = std::min(next, way.parcels.front().due);
            }
        }
        const auto rest = std::max<qint64>(0, (next - Clock::now()) / std::chrono::nanoseconds(1));
        const timespec time{rest / 1000000000, rest % 1000000000};
        ::ppoll(places.data(), places.size(), &time, nullptr);
        auto place = places.cbegin() + 2;
        for (Line &line : m_lines) {
            for (Way &way : line.ways) {
                if ((place++)->revents != 0)
                    take(way, line);
            }
        }
        if (places[1].revents != 0)
            accept();
        return places[0].revents == 0;
    }

    void accept()
    {
        const int client = ::accept4(m_listener, nullptr, nullptr, SOCK_CLOEXEC);
        const int server = newSocket();
        if (client < 0 ||
            ::connect(server, reinterpret_cast<const sockaddr *>(&m_server), sizeof m_server) != 0) {
            ::close(client);
            ::close(server);
            return;
        }
        sendAtOnce(client);
        sendAtOnce(server);
        m_lines.emplace_back();
        m_lines.back().ways = {Way{client, server, {}, 0, false}, Way{server, client, {}, 0, false}};
    }

    void take(Way &way, Line &line)
    {
        QByteArray bytes(64 * 1024, Qt::Uninitialized);
        const ssize_t count = ::recv(way.from, bytes.data(), size_t(bytes.size()), MSG_DONTWAIT);
        if (count < 0 && (errno == EAGAIN || errno == EINTR))
            return;
        bytes.resize(int(std::max<ssize_t>(0, count)));
        way.isClosed = bytes.isEmpty();
        way.bytes += bytes.size();
        way.parcels.push_back({Clock::now() + m_delay, bytes});
        const bool isQuestion = &way == line.ways.data() && !bytes.isEmpty();
        if (isQuestion && !line.isAsking)
            ++roundTrips;
        line.isAsking = isQuestion;
    }

    static void deliver(Way &way, Line &line)
    {
        while (!way.parcels.empty() && way.parcels.front().due <= Clock::now()) {
            const QByteArray bytes = way.parcels.front().bytes;
            way.parcels.pop_front();
            way.bytes -= bytes.size();
            if (bytes.isEmpty())
                ::shutdown(way.to, SHUT_WR);
            for (int done = 0; done < bytes.size() && !line.isBroken;) {
                const ssize_t count =
                    ::send(way.to, bytes.constData() + done, size_t(bytes.size() - done), MSG_NOSIGNAL);
                line.isBroken = count <= 0;
                done += int(count);
            }
        }
    }

    static void drop(const Line &line)
    {
        ::close(line.ways[0].from);
        ::close(line.ways[1].from);
    }

    const sockaddr_in m_server;
    const Clock::duration m_delay;
    std::array<int, 2> m_end{};
    int m_listener = -1;
    int m_port = 0;
    std::list<Line> m_lines;
    std::thread m_thread;
};

DelayProxy::DelayProxy(int serverPort, double delayMilliseconds)
    : m_loop(std::make_unique<Loop>(serverPort, delayMilliseconds))
{
}

DelayProxy::~DelayProxy() = default;

int DelayProxy::port() const
{
    return m_loop->port();
}

qint64 DelayProxy::takeRoundTrips()
{
    return m_loop->roundTrips.exchange(0);
}
