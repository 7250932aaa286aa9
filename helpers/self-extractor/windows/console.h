// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

namespace sfx {

class Job;

/// The module is a program of the graphical subsystem, so that no console window flashes up in
/// front of an application with windows. This gives a console application what it would have had
/// without the module: the console of the caller, if there is one, and standard handles.
void joinCallersConsole();

/// From here on Ctrl+C and its like do not end this process, and closing the console waits until it
/// has cleaned up. The application gets them as well, once it runs.
void outliveConsoleEvents();

/// Whether there was such an event.
bool isInterrupted();

/// As long as it lives: when the console is closed, the job's processes no longer depend on this
/// one, which Windows ends five seconds later. A program with windows goes on then, as it would have
/// without the module; one that is in the console is ended by Windows itself.
class JobOutlivesConsole
{
public:
    explicit JobOutlivesConsole(Job &job);
    JobOutlivesConsole(const JobOutlivesConsole &) = delete;
    JobOutlivesConsole &operator=(const JobOutlivesConsole &) = delete;
    ~JobOutlivesConsole();
};

} // namespace sfx
