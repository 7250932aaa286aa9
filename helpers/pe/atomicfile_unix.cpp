// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/pe/atomicfile.h"

#include "helpers/pe/systemerror.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>

#include <fcntl.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

namespace pe {

namespace {

constexpr std::uint64_t blockSize = 4096;

Error cannotWrite(const char *what)
{
    return systemError(ErrorKind::CannotWrite, what);
}

int descriptor(std::intptr_t handle)
{
    return static_cast<int>(handle);
}

std::string temporaryName()
{
    std::uint64_t number = 0;
    if (getrandom(&number, sizeof number, 0) != sizeof number) {
        number = static_cast<std::uint64_t>(getpid());
    }
    char name[40];
    std::snprintf(name, sizeof name, ".kestrelpack-%016llx.tmp",
                  static_cast<unsigned long long>(number));
    return name;
}

// Gives the new file the target's name, by an exchange of the two names if the file system can do that.
// A plain rename over an existing file makes ext4 write the whole new file to the disk at once, which
// takes longer than everything else.
bool takeName(const NativePath &temporary, const NativePath &target)
{
    if (renameat2(AT_FDCWD, temporary.c_str(), AT_FDCWD, target.c_str(), RENAME_EXCHANGE) == 0) {
        unlink(temporary.c_str());
        return true;
    }
    return rename(temporary.c_str(), target.c_str()) == 0;
}

// Copies inside the kernel. Returns how many bytes were copied; fewer than `length` if the file systems
// cannot do it.
Result<std::uint64_t> copyInKernel(int source, std::uint64_t from, int sink, std::uint64_t to,
                                   std::uint64_t length)
{
    std::uint64_t copied = 0;
    while (copied < length) {
        auto in = static_cast<off64_t>(from + copied);
        auto out = static_cast<off64_t>(to + copied);
        // File systems share whole blocks only, so the bytes before the first block border are
        // copied in a step for themselves.
        const std::uint64_t ragged = (blockSize - (from + copied) % blockSize) % blockSize;
        const std::uint64_t left = length - copied;
        const auto step = ragged != 0 ? std::min(ragged, left)
                                      : std::min<std::uint64_t>(left, std::uint64_t{1} << 30);
        const ssize_t got = copy_file_range(source, &in, sink, &out, step, 0);
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got < 0 && (errno == ENOSPC || errno == EFBIG || errno == EIO || errno == EDQUOT)) {
            return cannotWrite("the new file cannot be written");
        }
        if (got <= 0) {
            break;
        }
        copied += static_cast<std::uint64_t>(got);
    }
    return copied;
}

} // namespace

Result<AtomicFile> AtomicFile::beside(const NativePath &target)
{
    AtomicFile made(target);
    const NativePath folder = folderOf(made.m_target);
    // The system removes a file without a name when its process ends, however it ends.
    int fd = ::open(folder.empty() ? "." : folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600);
    if (fd < 0 && (errno == EOPNOTSUPP || errno == EISDIR || errno == EINVAL)) {
        made.m_temporary = folder + temporaryName();
        fd = ::open(made.m_temporary.c_str(), O_CREAT | O_EXCL | O_RDWR | O_CLOEXEC, 0600);
        if (fd < 0) {
            made.m_temporary.clear();
        }
    }
    if (fd < 0) {
        return cannotWrite("no new file can be created beside it");
    }
    made.m_file.m_handle = fd;
    return made;
}

AtomicFile::~AtomicFile()
{
    if (!m_temporary.empty()) {
        unlink(m_temporary.c_str());
    }
}

Result<Done> AtomicFile::resize(std::uint64_t size)
{
    if (ftruncate(descriptor(m_file.m_handle), static_cast<off_t>(size)) != 0) {
        return cannotWrite("the new file cannot get its size");
    }
    m_file.m_size = size;
    return Done{};
}

Result<Done> AtomicFile::copyFrom(const File &source, const FileRange &range, std::uint64_t to)
{
    FileRange data = source.nextData(range.begin);
    while (data.begin < range.end && data.begin < data.end) {
        const std::uint64_t end = std::min(data.end, range.end);
        const std::uint64_t target = to + (data.begin - range.begin);
        const auto copied = copyInKernel(descriptor(source.m_handle), data.begin,
                                         descriptor(m_file.m_handle), target, end - data.begin);
        if (copied.hasError()) {
            return copied.error();
        }
        auto rest = copyThroughMemory(source, {data.begin + copied.value(), end},
                                      target + copied.value());
        if (rest.hasError()) {
            return rest;
        }
        data = source.nextData(end);
    }
    return Done{};
}

Result<Done> AtomicFile::commit(File original)
{
    const int fd = descriptor(m_file.m_handle);
    struct stat status = {};
    struct stat made = {};
    if (fstat(descriptor(original.m_handle), &status) != 0 || fstat(fd, &made) != 0
        || ((made.st_uid != status.st_uid || made.st_gid != status.st_gid)
            && fchown(fd, status.st_uid, status.st_gid) != 0 && errno != EPERM)
        || fchmod(fd, status.st_mode & 07777) != 0) {
        return cannotWrite("the permissions cannot be kept");
    }
    if (m_temporary.empty()) {
        const NativePath name = folderOf(m_target) + temporaryName();
        const std::string self = "/proc/self/fd/" + std::to_string(fd);
        if (linkat(AT_FDCWD, self.c_str(), AT_FDCWD, name.c_str(), AT_SYMLINK_FOLLOW) != 0) {
            return cannotWrite("the new file cannot be named");
        }
        m_temporary = name;
    }
    if (!takeName(m_temporary, m_target)) {
        return cannotWrite("the new file cannot take its place");
    }
    m_temporary.clear();
    return Done{};
}

} // namespace pe
