// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "cli/interrupt.h"

#include <QSocketNotifier>

#include <array>
#include <csignal>

#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr std::array watchedSignals{SIGINT, SIGTERM, SIGHUP};

// A signal handler may call very few functions, so it only writes the signal's number to a pipe.
int pipeEnds[2] = {-1, -1};

extern "C" void passSignalOn(int number)
{
    const auto byte = static_cast<unsigned char>(number);
    // If the pipe is full, the main thread already has a signal to read.
    [[maybe_unused]] const auto written = write(pipeEnds[1], &byte, 1);
}

} // namespace

InterruptWatcher::InterruptWatcher(QObject *parent) : QObject(parent)
{
    if (pipe2(pipeEnds, O_CLOEXEC | O_NONBLOCK) != 0) {
        return; // without a pipe, the signals end the program as usual
    }
    auto *notifier = new QSocketNotifier(pipeEnds[0], QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this] {
        unsigned char number = 0;
        if (read(pipeEnds[0], &number, 1) == 1) {
            emit interrupted(number);
        }
    });
    for (const int number : watchedSignals) {
        // A signal that the caller ignores (nohup) stays ignored.
        if (std::signal(number, passSignalOn) == SIG_IGN) {
            std::signal(number, SIG_IGN);
        }
    }
}

InterruptWatcher::~InterruptWatcher()
{
    for (const int number : watchedSignals) {
        std::signal(number, SIG_DFL);
    }
    close(pipeEnds[0]);
    close(pipeEnds[1]);
}

void endAsInterrupted(int cause)
{
    std::signal(cause, SIG_DFL);
    raise(cause);
    _exit(128 + cause);
}

// Nobody waits for the program, so this only guards against an engine that hangs.
std::chrono::milliseconds timeToStop(int)
{
    return std::chrono::seconds(5);
}

void killProcess(qint64 id)
{
    if (id > 0) {
        kill(static_cast<pid_t>(id), SIGKILL);
    }
}
