// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "preparation/folderlisting.h"

#include "preparation/folderwalk.h"

#include <QFile>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace {

struct CloseDirectory
{
    void operator()(DIR *directory) const { closedir(directory); }
};

// In 100 ns since 1970, as archives store it.
qint64 timeOf(const struct stat &state)
{
    return static_cast<qint64>(state.st_mtim.tv_sec) * 10000000 + state.st_mtim.tv_nsec / 100;
}

SourceEntry::Kind kindOf(mode_t mode)
{
    switch (mode & S_IFMT) {
    case S_IFREG:
        return SourceEntry::Kind::File;
    case S_IFDIR:
        return SourceEntry::Kind::Folder;
    case S_IFLNK:
        return SourceEntry::Kind::Link;
    case S_IFIFO:
        return SourceEntry::Kind::Pipe;
    case S_IFSOCK:
        return SourceEntry::Kind::Socket;
    default:
        return SourceEntry::Kind::Device;
    }
}

QString systemText(int error)
{
    return QString::fromLocal8Bit(strerror(error));
}

// Returns the path without links, or an empty text.
std::string resolved(const std::string &path)
{
    const std::unique_ptr<char, decltype(&std::free)> real(realpath(path.c_str(), nullptr),
                                                           &std::free);
    return real ? std::string(real.get()) : std::string();
}

std::string textOfLink(const std::string &path)
{
    std::string text(PATH_MAX, '\0');
    const ssize_t size = readlink(path.c_str(), text.data(), text.size());
    text.resize(size > 0 ? static_cast<std::size_t>(size) : 0);
    return text;
}

QString decoded(const std::string &bytes)
{
    return QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()));
}

// Paths are bytes here, so that every name can be opened.
class Listing : private FolderWalk<std::string>
{
public:
    explicit Listing(const QString &folder)
        : m_root(resolved(QFile::encodeName(folder).toStdString()))
    {
    }

    SourceListing run(const std::function<bool()> &isStopped)
    {
        if (m_root.empty()) {
            m_listing.error = systemText(errno);
            return m_listing;
        }
        walk(m_root, isStopped, [this](const OpenFolder &folder) { list(folder); });
        return m_listing;
    }

private:
    void list(const OpenFolder &folder)
    {
        const std::unique_ptr<DIR, CloseDirectory> directory(opendir(folder.path.c_str()));
        if (!directory) {
            fail(folder, systemText(errno));
            return;
        }
        for (errno = 0; const dirent *found = readdir(directory.get()); errno = 0) {
            if (strcmp(found->d_name, ".") != 0 && strcmp(found->d_name, "..") != 0) {
                add(folder, dirfd(directory.get()), found->d_name);
            }
        }
        if (errno != 0) {
            fail(folder, systemText(errno));
        }
    }

    void add(const OpenFolder &folder, int directory, const std::string &name)
    {
        SourceEntry entry;
        const QString shown = decoded(name);
        entry.path = folder.inside.isEmpty() ? shown : folder.inside + '/' + shown;
        entry.nameIsDamaged = shown.toUtf8().toStdString() != name;
        const std::string path = folder.path + '/' + name;
        struct stat state = {};
        if (fstatat(directory, name.c_str(), &state, AT_SYMLINK_NOFOLLOW) != 0) {
            if (errno == ENOENT) {
                return; // removed meanwhile
            }
            entry.kind = SourceEntry::Kind::Unreadable;
            entry.problem = systemText(errno);
        } else {
            describe(entry, state, directory, name, path);
        }
        m_listing.entries.append(entry);
        if (entry.kind == SourceEntry::Kind::Folder) {
            m_waiting.push_back({path, entry.path, m_listing.entries.size() - 1});
        }
    }

    void describe(SourceEntry &entry, const struct stat &state, int directory,
                  const std::string &name, const std::string &path) const
    {
        entry.kind = kindOf(state.st_mode);
        entry.modified = timeOf(state);
        entry.mode = state.st_mode & 07777;
        if (entry.kind == SourceEntry::Kind::Link) {
            describeTarget(entry, path);
        } else if (entry.kind == SourceEntry::Kind::File) {
            entry.size = state.st_size;
            if (faccessat(directory, name.c_str(), R_OK, AT_EACCESS) != 0) {
                entry.kind = SourceEntry::Kind::Unreadable;
                entry.problem = systemText(errno);
            }
        }
    }

    void describeTarget(SourceEntry &entry, const std::string &path) const
    {
        const std::string target = resolved(path);
        const int error = errno;
        entry.target = decoded(textOfLink(path));
        if (target.empty()) {
            if (error == EACCES) {
                entry.kind = SourceEntry::Kind::Unreadable;
                entry.problem = systemText(error);
            }
            entry.targetKind = error == ELOOP ? SourceEntry::Target::Circle
                                              : SourceEntry::Target::Missing;
            return;
        }
        const std::string prefix = m_root == "/" ? m_root : m_root + '/';
        const bool isInside = target == m_root || target.compare(0, prefix.size(), prefix) == 0;
        entry.targetKind = isInside ? SourceEntry::Target::Inside : SourceEntry::Target::Outside;
        if (isInside) {
            entry.target = target == m_root ? QString() : decoded(target.substr(prefix.size()));
        }
    }

    const std::string m_root;
};

} // namespace

SourceListing listFolder(const QString &folder, const std::function<bool()> &isStopped)
{
    return Listing(folder).run(isStopped);
}
