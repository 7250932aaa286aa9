// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "heartbeat.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstring>
#include <mutex>
#include <string>
#include <system_error>
#include <thread>

#ifndef _WIN32
#include <csignal>
#endif

namespace kestrelpack {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds longestSilence{3};
// How long to wait while another thread is in the middle of a line.
constexpr std::chrono::milliseconds shortPause{200};

#ifdef _WIN32
constexpr char back = '\r';
#else
constexpr char back = '\b';
#endif

struct State
{
    std::recursive_mutex mutex;
    std::condition_variable_any stopped;
    std::thread thread;

    std::FILE *stream = nullptr;
    bool stopping = false;
    Clock::time_point lastFlush; // the last flush that had text to pass on
    bool hasUnflushed = false;
    bool isAtStart = true; // at the start of a line, and no progress line is shown
    std::string line;      // the progress line that is shown, or empty
    std::string percentage;
};

// The object is never destroyed: a third Ctrl-C ends the process by exit() while the thread runs.
State &state()
{
    static State &instance = *new State;
    return instance;
}

// Only the main thread changes it, while no other thread prints.
std::atomic<bool> isBeating = false;

// Removes the line in the same way as 7-Zip, so that a terminal always shows one line.
void takeAway(const std::string &line, std::FILE *stream)
{
    const auto repeat = [stream](char character, std::size_t count) {
        for (; count > 0; --count) {
            std::fputc(character, stream);
        }
    };
    const std::size_t steps = back == '\r' ? 1 : line.size();
    repeat(back, steps);
    repeat(' ', line.size());
    repeat(back, steps);
}

// Prints the progress line again. Between two steps 7-Zip shows no line: then this prints the last
// percentage and removes it again.
void beat(State &shared)
{
    if (shared.line.empty()) {
        std::fputs(shared.percentage.c_str(), shared.stream);
        takeAway(shared.percentage, shared.stream);
    } else {
        takeAway(shared.line, shared.stream);
        std::fputs(shared.line.c_str(), shared.stream);
    }
    std::fflush(shared.stream);
    shared.lastFlush = Clock::now();
    shared.hasUnflushed = false;
}

void keepBeating()
{
    State &shared = state();
    std::unique_lock lock(shared.mutex);
    while (!shared.stopping) {
        const Clock::time_point due = shared.lastFlush + longestSilence;
        const Clock::time_point now = Clock::now();
        if (now < due) {
            shared.stopped.wait_until(lock, due);
        } else if (shared.isAtStart || !shared.line.empty()) {
            beat(shared);
        } else {
            shared.stopped.wait_until(lock, now + shortPause);
        }
    }
}

// The new thread blocks all signals: they must reach the main thread and wake it if it waits for a
// file.
void startThread()
{
#ifndef _WIN32
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
#endif
    try {
        state().thread = std::thread(keepBeating);
    } catch (const std::system_error &) {
        // The system has no free thread. Go on without the heartbeat: the archive is more
        // important.
    }
#ifndef _WIN32
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
#endif
}

bool isOurs(std::FILE *stream)
{
    return isBeating && stream == state().stream;
}

} // namespace

Heartbeat::Heartbeat(std::FILE *stream)
{
    if (!stream) {
        return;
    }
    State &shared = state();
    std::fflush(stream);
    shared.stream = stream;
    shared.stopping = false;
    shared.lastFlush = Clock::now();
    shared.hasUnflushed = false;
    shared.isAtStart = true;
    shared.line.clear();
    shared.percentage = "  0%";
    isBeating = true;
    startThread();
}

Heartbeat::~Heartbeat()
{
    stop();
}

void Heartbeat::stop()
{
    if (!isBeating) {
        return;
    }
    State &shared = state();
    {
        const std::lock_guard lock(shared.mutex);
        shared.stopping = true;
    }
    shared.stopped.notify_all();
    if (shared.thread.joinable()) {
        shared.thread.join();
    }
    isBeating = false;
}

OutputLock::OutputLock() : m_locked(isBeating)
{
    if (m_locked) {
        state().mutex.lock();
    }
}

OutputLock::~OutputLock()
{
    if (m_locked) {
        state().mutex.unlock();
    }
}

int write(const char *text, std::FILE *stream)
{
    const OutputLock lock;
    if (isOurs(stream) && *text != 0) {
        state().isAtStart = text[std::strlen(text) - 1] == '\n';
        state().hasUnflushed = true;
    }
    return std::fputs(text, stream);
}

int write(char character, std::FILE *stream)
{
    const OutputLock lock;
    if (isOurs(stream)) {
        state().isAtStart = character == '\n';
        state().hasUnflushed = true;
    }
    return std::fputc(static_cast<unsigned char>(character), stream);
}

int flush(std::FILE *stream)
{
    const OutputLock lock;
    const int result = std::fflush(stream);
    if (isOurs(stream) && state().hasUnflushed) {
        state().lastFlush = Clock::now();
        state().hasUnflushed = false;
    }
    return result;
}

void showLine(std::FILE *stream, const char *line, const char *percentage)
{
    if (!isOurs(stream)) {
        return;
    }
    State &shared = state();
    shared.line = line;
    // Keep only real percentages: a size ("12M") means nothing when it is printed again later.
    if (*percentage != 0 && percentage[std::strlen(percentage) - 1] == '%') {
        shared.percentage = percentage;
    }
}

void hideLine(std::FILE *stream)
{
    if (isOurs(stream)) {
        state().line.clear();
        state().isAtStart = true;
    }
}

} // namespace kestrelpack
