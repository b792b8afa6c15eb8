#pragma once

#include <QtGlobal>

#include <memory>

/**
 * A network in front of a server on this computer: what goes through arrives that much later, each way. It
 * counts the round trips, messages that a client sends after an answer to its last one. Runs on a thread of
 * its own, which ends with the object.
 */
class DelayProxy
{
public:
    DelayProxy(int serverPort, double delayMilliseconds);
    ~DelayProxy();
    DelayProxy(const DelayProxy &) = delete;
    DelayProxy &operator=(const DelayProxy &) = delete;

    /** Where clients find it, on 127.0.0.1. */
    int port() const;
    /** Of all connections since the last call. */
    qint64 takeRoundTrips();

private:
    class Loop;
    std::unique_ptr<Loop> m_loop;
};
