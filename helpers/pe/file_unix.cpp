// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/pe/file.h"

#include "helpers/pe/systemerror.h"

#include <algorithm>
#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace pe {

namespace {

int descriptor(std::intptr_t handle)
{
    return static_cast<int>(handle);
}

// Each attempt can fail because another editor was first. The number is limited because on file systems
// that change their inode numbers the check after the lock never succeeds.
constexpr int openAttempts = 50;

// False if the path names another file now: an editor that had the lock before us has replaced it.
bool isStillNamed(int fd, const NativePath &path)
{
    struct stat open = {};
    struct stat named = {};
    return fstat(fd, &open) == 0 && stat(path.c_str(), &named) == 0 && open.st_dev == named.st_dev
        && open.st_ino == named.st_ino;
}

} // namespace

Result<File> File::open(const NativePath &path, Access access)
{
    const bool edit = access == Access::Edit;
    for (int attempt = 1;; ++attempt) {
        File file;
        // With O_NONBLOCK a named pipe is refused; without it the call would wait for a writer.
        file.m_handle = ::open(path.c_str(), (edit ? O_RDWR : O_RDONLY) | O_CLOEXEC | O_NONBLOCK);
        const int fd = descriptor(file.m_handle);
        struct stat status = {};
        if (fd < 0 || fstat(fd, &status) != 0) {
            return systemError(ErrorKind::CannotRead,
                               edit ? "cannot be opened for editing" : "cannot be opened");
        }
        if (!S_ISREG(status.st_mode)) {
            return Error{ErrorKind::CannotRead, "is not a regular file"};
        }
        if (edit && flock(fd, LOCK_EX) == 0 && !isStillNamed(fd, path) && attempt < openAttempts) {
            continue;
        }
        if (fstat(fd, &status) != 0) {
            return systemError(ErrorKind::CannotRead, "cannot be read: its size is unknown");
        }
        file.m_size = static_cast<std::uint64_t>(status.st_size);
        return file;
    }
}

Result<File> File::create(const NativePath &path)
{
    File file;
    file.m_handle
        = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NONBLOCK, 0666);
    if (file.m_handle == noHandle) {
        return systemError(ErrorKind::CannotWrite, "cannot be created");
    }
    return file;
}

void File::close()
{
    if (m_handle != noHandle) {
        ::close(descriptor(std::exchange(m_handle, noHandle)));
    }
}

Result<Done> File::readAt(std::uint64_t offset, std::span<std::uint8_t> buffer) const
{
    while (!buffer.empty()) {
        const ssize_t got
            = pread(descriptor(m_handle), buffer.data(), buffer.size(), static_cast<off_t>(offset));
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got < 0) {
            return systemError(ErrorKind::CannotRead, "cannot be read");
        }
        if (got == 0) {
            return Error{ErrorKind::Damaged, "the file ends too early"};
        }
        buffer = buffer.subspan(static_cast<std::size_t>(got));
        offset += static_cast<std::uint64_t>(got);
    }
    return Done{};
}

Result<Done> File::writeAt(std::uint64_t offset, ByteView bytes)
{
    while (!bytes.empty()) {
        const ssize_t put
            = pwrite(descriptor(m_handle), bytes.data(), bytes.size(), static_cast<off_t>(offset));
        if (put < 0 && errno == EINTR) {
            continue;
        }
        if (put < 0) {
            return systemError(ErrorKind::CannotWrite, "cannot be written");
        }
        bytes = bytes.subspan(static_cast<std::size_t>(put));
        offset += static_cast<std::uint64_t>(put);
    }
    return Done{};
}

FileRange File::nextData(std::uint64_t from) const
{
    if (from >= m_size) {
        return {m_size, m_size};
    }
    const off_t begin = lseek(descriptor(m_handle), static_cast<off_t>(from), SEEK_DATA);
    if (begin < 0) {
        // ENXIO: only a hole follows. Any other error: the file system does not know its holes.
        return errno == ENXIO ? FileRange{m_size, m_size} : FileRange{from, m_size};
    }
    const off_t end = lseek(descriptor(m_handle), begin, SEEK_HOLE);
    const auto last = end < 0 ? m_size : static_cast<std::uint64_t>(end);
    return {static_cast<std::uint64_t>(begin), std::min(last, m_size)};
}

} // namespace pe
