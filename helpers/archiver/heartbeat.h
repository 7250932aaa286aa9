// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdio>

// Keeps 7-Zip's progress output alive: a thread prints the progress line again when the stream has
// been silent for three seconds. So a reader may rely on a line every five seconds, however long one
// piece of work takes. change-sources puts the calls into a copy of 7-Zip's sources.
namespace kestrelpack {

// Beats from its construction to stop(), or to its end. There is one at a time, on the main thread.
class Heartbeat
{
public:
    // Does nothing if there is no stream.
    explicit Heartbeat(std::FILE *stream);
    ~Heartbeat();
    Heartbeat(const Heartbeat &) = delete;
    Heartbeat &operator=(const Heartbeat &) = delete;

    void stop();
};

// While one of these lives, its thread alone prints. It may hold several.
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

// What 7-Zip's output streams do, noting what was printed and when.
int write(const char *text, std::FILE *stream);
int write(char character, std::FILE *stream);
int flush(std::FILE *stream);

// What is shown on the progress stream: a line of text that begins with the percentage, or none.
void showLine(std::FILE *stream, const char *line, const char *percentage);
void hideLine(std::FILE *stream);

} // namespace kestrelpack
