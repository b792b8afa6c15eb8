#pragma once

#include <QtGlobal>

#include <cstddef>

class QStringList;

/**
 * The other end of a ChildProcess: its channel to the program, and the walls around a process that works on
 * bytes that nobody has looked at. Main thread of that process.
 */
namespace ChildSide {
/** The descriptor on which a child finds its channel. */
constexpr int channel = 3;

/** First of all: ends with the program and leaves no picture of its memory behind when it crashes. */
void begin();
/**
 * Before the first thread: from here on it reads what is in these folders, and no other file. A system that
 * cannot do that has it open no file once it is shut in.
 */
void keepReadable(const QStringList &folders);
/**
 * Once everything is loaded and all threads run: from here on it starts no process or thread, speaks to
 * nobody but the program, and takes at most this many bytes more than now.
 */
void shutIn(qint64 mostBytes);
/** What the work at hand may take; a signal ends the process that goes beyond. */
void limit(qint64 bytes, int seconds);

/** Waits for a request and its file, which is the caller's to close. False when the program is gone. */
bool receive(void *bytes, size_t length, int &file);
bool send(const void *bytes, size_t length);
void closeFile(int file);
/** Ends the process without a farewell from the libraries. */
[[noreturn]] void leave(int code);
} // namespace ChildSide
