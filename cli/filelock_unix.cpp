// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "cli/filelock.h"

#include <QFile>

#include <cerrno>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

int openLockFile(const QByteArray &path)
{
    constexpr int flags = O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK;
    const int file = open(path.constData(), O_RDWR | O_CREAT | flags, 0666);
    // A file that another user has left cannot be written, but it can be held.
    return file < 0 && errno == EACCES ? open(path.constData(), O_RDONLY | flags) : file;
}

// Returns true if `path` still names the open file.
bool isNameOf(const QByteArray &path, int file)
{
    struct stat named = {};
    struct stat opened = {};
    return lstat(path.constData(), &named) == 0 && fstat(file, &opened) == 0
        && named.st_dev == opened.st_dev && named.st_ino == opened.st_ino;
}

bool isEmpty(int file)
{
    struct stat status = {};
    return fstat(file, &status) == 0 && S_ISREG(status.st_mode) && status.st_size == 0;
}

} // namespace

FileLock::FileLock(const QString &path) : m_path(path) {}

FileLock::~FileLock()
{
    release();
}

FileLock::Result FileLock::tryHold()
{
    const QByteArray path = QFile::encodeName(m_path);
    for (;;) {
        const int file = openLockFile(path);
        if (file < 0) {
            m_error = qt_error_string(errno);
            return Result::Failed;
        }
        if (flock(file, LOCK_EX | LOCK_NB) != 0) {
            const int error = errno;
            if (error != EWOULDBLOCK && error != EINTR && isEmpty(file)) {
                unlink(path.constData()); // the file is useless without locks
            }
            close(file);
            if (error == EINTR) {
                continue;
            }
            return error == EWOULDBLOCK ? Result::HeldByAnother : Result::NoLocksHere;
        }
        // The previous holder may have removed the file after it was opened here.
        if (isNameOf(path, file)) {
            m_handle = file;
            return Result::Held;
        }
        close(file);
    }
}

// Removes the name first: another process that has opened the file then sees that it is outdated.
void FileLock::release()
{
    if (m_handle < 0) {
        return;
    }
    const int file = static_cast<int>(m_handle);
    const QByteArray path = QFile::encodeName(m_path);
    if (isNameOf(path, file) && isEmpty(file)) {
        unlink(path.constData());
    }
    close(file);
    m_handle = -1;
}
