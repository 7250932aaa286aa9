// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "preparation/stagedfile.h"

#include <QFile>

#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>
#include <vector>

#ifdef __linux__
#include <linux/fs.h>
#include <sys/ioctl.h>
#endif

namespace {

constexpr std::size_t copiedAtOnce = 1 << 20; // in bytes

class Descriptor
{
public:
    explicit Descriptor(int number) : m_number(number) {}
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;
    ~Descriptor()
    {
        if (isValid()) {
            close(m_number);
        }
    }
    bool isValid() const { return m_number >= 0; }
    int number() const { return m_number; }

private:
    int m_number;
};

QByteArray nameOf(const QString &path)
{
    return QFile::encodeName(path);
}

QString systemText()
{
    return QString::fromLocal8Bit(strerror(errno));
}

// For futimens(): the time of access stays as it is.
std::array<timespec, 2> timesOf(qint64 modified)
{
    constexpr qint64 ticksInSecond = 10000000;
    qint64 seconds = modified / ticksInSecond;
    qint64 ticks = modified % ticksInSecond;
    if (ticks < 0) { // before 1970
        ticks += ticksInSecond;
        --seconds;
    }
    std::array<timespec, 2> times = {};
    times[0].tv_nsec = UTIME_OMIT;
    times[1].tv_sec = static_cast<time_t>(seconds);
    times[1].tv_nsec = static_cast<long>(ticks * 100);
    return times;
}

bool writeAll(int file, const char *bytes, std::size_t size)
{
    while (size > 0) {
        const ssize_t written = write(file, bytes, size);
        if (written < 0 && errno != EINTR) {
            return false;
        }
        bytes += written > 0 ? written : 0;
        size -= written > 0 ? static_cast<std::size_t>(written) : 0;
    }
    return true;
}

// Some file systems can let two files share their bytes until one of them is written to.
bool shareBytes(int source, int target)
{
#ifdef FICLONE
    return ioctl(target, FICLONE, source) == 0;
#else
    Q_UNUSED(source)
    Q_UNUSED(target)
    return false;
#endif
}

QString copyBytes(int source, int target, const CopyProgress &progress)
{
    std::vector<char> buffer(copiedAtOnce);
    for (;;) {
        const ssize_t size = read(source, buffer.data(), buffer.size());
        if (size == 0) {
            return {};
        }
        if (size < 0 && errno == EINTR) {
            continue;
        }
        if (size < 0 || !writeAll(target, buffer.data(), static_cast<std::size_t>(size))) {
            return systemText();
        }
        if (!progress(size)) {
            return QStringLiteral("stopped");
        }
    }
}

} // namespace

bool linkFile(const QString &source, const QString &target)
{
    const QByteArray name = nameOf(target);
    if (linkat(AT_FDCWD, nameOf(source).constData(), AT_FDCWD, name.constData(), 0) != 0) {
        return false;
    }
    // The source may have been exchanged for a symbolic link, which linkat() does not follow.
    struct stat state = {};
    if (lstat(name.constData(), &state) == 0 && S_ISREG(state.st_mode)) {
        return true;
    }
    unlink(name.constData());
    return false;
}

QString copyFile(const QString &source, const QString &target, const PlannedFile &planned,
                 const CopyProgress &progress)
{
    // Without O_NONBLOCK, a pipe that has taken the file's place would wait for ever.
    const Descriptor from(
        open(nameOf(source).constData(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
    if (!from.isValid()) {
        return systemText();
    }
    struct stat state = {};
    if (fstat(from.number(), &state) != 0 || !S_ISREG(state.st_mode)) {
        return QStringLiteral("it is no file any more");
    }
    const Descriptor to(
        open(nameOf(target).constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
    if (!to.isValid()) {
        return systemText();
    }
    if (shareBytes(from.number(), to.number())) {
        progress(planned.size);
    } else {
        const QString error = copyBytes(from.number(), to.number(), progress);
        if (!error.isEmpty()) {
            return error;
        }
    }
    const auto times = timesOf(planned.modified);
    if (fchmod(to.number(), planned.mode.value_or(0644)) != 0
        || futimens(to.number(), times.data()) != 0) {
        return systemText();
    }
    return {};
}

qint64 freeBytesAt(const QString &folder)
{
    struct statvfs disk = {};
    return statvfs(nameOf(folder).constData(), &disk) == 0
        ? static_cast<qint64>(disk.f_bavail) * static_cast<qint64>(disk.f_frsize)
        : 0;
}

QString makeFolder(const QString &path)
{
    return mkdir(nameOf(path).constData(), 0700) == 0 ? QString() : systemText();
}

QString finishFolder(const QString &path, const PlannedFolder &planned)
{
    const QByteArray name = nameOf(path);
    const auto times = timesOf(planned.modified);
    const bool isDone = chmod(name.constData(), planned.mode.value_or(0755)) == 0
        && utimensat(AT_FDCWD, name.constData(), times.data(), AT_SYMLINK_NOFOLLOW) == 0;
    return isDone ? QString() : systemText();
}

void openFolderForRemoval(const QString &path)
{
    chmod(nameOf(path).constData(), 0700);
}

bool removeStagedFile(const QString &path, bool)
{
    return unlink(nameOf(path).constData()) == 0 || errno == ENOENT;
}

bool removeStagedFolder(const QString &path)
{
    return rmdir(nameOf(path).constData()) == 0 || errno == ENOENT;
}
