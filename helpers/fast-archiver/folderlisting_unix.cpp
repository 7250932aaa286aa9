// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/fast-archiver/folderlisting.h"

#include "helpers/fast-archiver/utf16path.h"
#include "helpers/pe/systemerror.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <memory>

#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

namespace fast {

namespace {

constexpr std::uint32_t attributeReadOnly = 0x01;
constexpr std::uint32_t attributeFolder = 0x10;
constexpr std::uint32_t attributeArchive = 0x20;
constexpr std::uint32_t unixExtension = 0x8000; // the upper 16 bits are the file's mode

// From 1601 to 1970.
constexpr std::int64_t secondsBefore1970 = 11644473600;

Failure cannotRead(const pe::NativePath &path, const char *what)
{
    return failureOf(path, pe::systemError(pe::ErrorKind::CannotRead, what));
}

std::uint32_t attributesOf(mode_t mode)
{
    const std::uint32_t kind = S_ISDIR(mode) ? attributeFolder : attributeArchive;
    const std::uint32_t readOnly = (mode & 0222) == 0 ? attributeReadOnly : 0;
    return kind | readOnly | unixExtension | (static_cast<std::uint32_t>(mode & 0xffff) << 16);
}

std::uint64_t fileTimeOf(const timespec &time)
{
    const std::int64_t seconds = std::max<std::int64_t>(time.tv_sec + secondsBefore1970, 0);
    return static_cast<std::uint64_t>(seconds) * 10000000
        + static_cast<std::uint64_t>(time.tv_nsec / 100);
}

} // namespace

struct FolderListing::SystemEntry
{
    std::string name;
};

FolderListing::FolderListing(const pe::NativePath &root, const std::atomic<bool> &stopped)
    : m_root(root)
    , m_stopped(stopped)
{
}

Outcome<Done> FolderListing::list(const SourceFile *folder)
{
    const pe::NativePath whole = m_root + (folder ? folder->place : pe::NativePath());
    const std::unique_ptr<DIR, int (*)(DIR *)> open(opendir(whole.c_str()), &closedir);
    if (!open) {
        return cannotRead(whole, "cannot be listed");
    }
    for (;;) {
        if (m_stopped) {
            return Failure{ExitStatus::Interrupted, {}};
        }
        errno = 0;
        const dirent *const entry = readdir(open.get());
        if (!entry) {
            return errno == 0 ? Outcome<Done>(Done{}) : cannotRead(whole, "cannot be listed");
        }
        const std::string name = entry->d_name;
        if (name == "." || name == "..") {
            continue;
        }
        auto added = add(folder, {name});
        if (added.hasFailed()) {
            return added;
        }
    }
}

Outcome<Done> FolderListing::add(const SourceFile *folder, const SystemEntry &entry)
{
    SourceFile file;
    file.place = folder ? folder->place + '/' + entry.name : entry.name;
    const pe::NativePath whole = m_root + file.place;
    const auto units = utf16NameOf(entry.name);
    if (!units) {
        return failureOf(whole, {pe::ErrorKind::CannotRead, "its name cannot be stored"});
    }
    file.path = folder ? folder->path + u'/' + *units : *units;
    struct stat status = {};
    if (lstat(whole.c_str(), &status) != 0) {
        return cannotRead(whole, "cannot be read");
    }
    file.isFolder = S_ISDIR(status.st_mode);
    file.isLink = S_ISLNK(status.st_mode);
    file.modified = fileTimeOf(status.st_mtim);
    file.attributes = attributesOf(status.st_mode);
    if (!file.isFolder && !file.isLink && !S_ISREG(status.st_mode)) {
        return failureOf(whole, {pe::ErrorKind::CannotRead, "is neither a file nor a folder"});
    }
    if (file.isLink) {
        char target[PATH_MAX];
        const ssize_t length = readlink(whole.c_str(), target, sizeof target);
        if (length < 0) {
            return cannotRead(whole, "cannot be read");
        }
        file.linkTarget.assign(target, static_cast<std::size_t>(length));
        file.size = file.linkTarget.size();
    } else if (!file.isFolder) {
        file.size = static_cast<std::uint64_t>(status.st_size);
    }
    m_files.push_back(std::move(file));
    return Done{};
}

} // namespace fast
