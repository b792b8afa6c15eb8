#pragma once

#include <QtGlobal>

#include <functional>

class QByteArray;

/**
 * The program's end of a process that it has started for one kind of work: a process that inherits nothing
 * but a channel to here, and ends when this object goes. Used by one thread at a time.
 */
class ChildProcess
{
public:
    ChildProcess() = default;
    ~ChildProcess() { end(); }
    ChildProcess(const ChildProcess &) = delete;
    ChildProcess &operator=(const ChildProcess &) = delete;

    /** The program that runs here, whatever has become of its file. */
    static const char *ownProgram();
    /** Runs a program with one argument. */
    bool start(const char *program, const char *argument);
    bool isRunning() const { return m_channel >= 0; }
    /** Ends it at once, whatever it does, and leaves nothing of it. */
    void end();

    /** Sends bytes and an open file, which stays the caller's to close. False when the process is gone. */
    bool send(const void *bytes, size_t length, int file);
    /** Fills all the bytes; false when the process is gone, or there is nothing more to wait for. */
    bool receive(void *bytes, size_t length, const std::function<bool()> &mayWait);

    /** A file without a name that holds these bytes, at its start and not to be changed; -1 on failure. */
    static int fileOf(const QByteArray &bytes);
    static void closeFile(int file);

private:
    int m_channel = -1;
    qint64 m_id = 0;
};
