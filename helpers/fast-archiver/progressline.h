// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <chrono>
#include <cstdio>
#include <string>

namespace fast {

// Prints lines that replace each other, in the form of 7-Zip's archiver. Prints a line again if it
// has not changed for three seconds: the engine treats an archiver that prints nothing for 30
// seconds as finished.
class ProgressLine
{
public:
    using Clock = std::chrono::steady_clock;

    explicit ProgressLine(std::FILE *stream) : m_stream(stream) {}

    void show(const std::string &line, Clock::time_point now);
    // Removes the line.
    void hide();

private:
    std::FILE *m_stream;
    std::string m_shown;
    Clock::time_point m_printed;
};

// The characters that remove a line from a terminal.
std::string removalOf(const std::string &line);

} // namespace fast
