// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include <cerrno>
#include <csignal>
#include <cstdarg>

#include <sched.h>
#include <sys/syscall.h>
#include <sys/types.h>
#include <unistd.h>

// QProcess starts programs with clone(2), so the child runs in its parent's memory until it
// executes the program. A sanitizer's records from that time go into the parent, whose other
// threads still run. ThreadSanitizer then ends at once with a failed internal check. A Qt that is
// built with a sanitizer uses fork for this reason. Debian's Qt is built without one, so this
// function replaces that of the C library and forks.
//
// It accepts only QProcess's call. All other calls fail with ENOSYS.
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
