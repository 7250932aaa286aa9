// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include <cerrno>
#include <csignal>
#include <cstdarg>

#include <sched.h>
#include <sys/syscall.h>
#include <sys/types.h>
#include <unistd.h>

// QProcess starts programs with clone(2) so that the child runs in its parent's memory until it executes them.
// What a sanitizer notes in that time it notes in the parent, whose other threads run on; ThreadSanitizer ends at
// once with a failed check of its own. A Qt that is built with a sanitizer forks for that reason. Debian's is not,
// so this takes the place of the C library's function, and forks.
//
// Only QProcess's call is answered; any other fails with ENOSYS.
extern "C" int clone(int (*run)(void *), void *, int flags, void *argument, ...)
{
    if (flags != (CLONE_VM | CLONE_VFORK | CLONE_PIDFD | SIGCHLD)) {
        errno = ENOSYS;
        return -1;
    }
    va_list rest;
    va_start(rest, argument);
    int *const descriptor = va_arg(rest, int *);
    va_end(rest);

    const pid_t child = fork();
    if (child == 0) {
        _exit(run(argument));
    }
    if (child > 0) {
        *descriptor = static_cast<int>(syscall(SYS_pidfd_open, child, 0));
    }
    return child;
}
