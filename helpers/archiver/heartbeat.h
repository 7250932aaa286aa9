// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdio>

// Keeps 7-Zip's progress output alive: a thread prints the progress line again when the stream has
// been silent for three seconds. So a reader gets a line at least every five seconds, even if one
// step takes long. change-sources inserts the calls into a copy of 7-Zip's sources.
namespace kestrelpack {

// Prints the line again from its construction until stop() or its destructor. Only one object at a
// time, on the main thread.
class Heartbeat
{
public:
    // Does nothing if `stream` is null.
    explicit Heartbeat(std::FILE *stream);
    ~Heartbeat();
    Heartbeat(const Heartbeat &) = delete;
    Heartbeat &operator=(const Heartbeat &) = delete;

    void stop();
};

// While an object exists, only its thread can print. One thread may have several at the same time.
class OutputLock
{
public:
    OutputLock();
    ~OutputLock();
    OutputLock(const OutputLock &) = delete;
    OutputLock &operator=(const OutputLock &) = delete;

private:
    bool m_locked;
};

// These do the same as 7-Zip's output streams, and record what was printed and when.
int write(const char *text, std::FILE *stream);
int write(char character, std::FILE *stream);
int flush(std::FILE *stream);

// These tell the heartbeat that 7-Zip shows a progress line, which begins with the percentage, or
// that it has removed the line.
void showLine(std::FILE *stream, const char *line, const char *percentage);
void hideLine(std::FILE *stream);

} // namespace kestrelpack
