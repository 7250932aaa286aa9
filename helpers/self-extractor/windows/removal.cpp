// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/removal.h"

#include "helpers/self-extractor/windows/fileowner.h"
#include "helpers/self-extractor/windows/folderlisting.h"

namespace sfx {

namespace {

// Pauses between ten tries, in milliseconds; 4.5 s together.
constexpr DWORD pauses[] = {10, 20, 40, 80, 160, 320, 640, 1280, 2000};
constexpr std::uint64_t noDeadline = UINT64_MAX;

// A read-only file or folder cannot be removed. For a link, this changes the link itself.
void makeWritable(const Text &path, DWORD attributes)
{
    if ((attributes & FILE_ATTRIBUTE_READONLY) == 0) {
        return;
    }
    const Handle item(
        CreateFileW(wide(path.data()), FILE_WRITE_ATTRIBUTES,
                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                    FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
    FILE_BASIC_INFO info = {}; // zeros: leave unchanged
    info.FileAttributes = FILE_ATTRIBUTE_NORMAL;
    SetFileInformationByHandle(item.get(), FileBasicInfo, &info, sizeof info);
}

// Walks through a tree and removes files first, and each folder after its content. The current path
// of folders is on the heap, since a tree may be thousands of folders deep.
class Removal
{
public:
    explicit Removal(std::uint64_t deadline) : m_deadline(deadline) {}
    Removal(const Removal &) = delete;
    Removal &operator=(const Removal &) = delete;
    ~Removal()
    {
        while (m_level) {
            leave();
        }
    }

    // Returns true if the folder has been removed. Does nothing if `mine` is given and the folder
    // has another owner.
    bool remove(const Text &root, HANDLE mine = nullptr);

private:
    struct Level
    {
        FolderListing listing;
        std::size_t pathSize = 0; // of the folder above
        Owned<Level> above;
    };

    bool enter(std::size_t sizeAbove);
    void leave();
    bool removeCurrent();
    void removeEntry();

    Text m_path;
    Owned<Level> m_level;
    std::uint64_t m_deadline;
};

// Makes the folder at m_path the current one.
bool Removal::enter(std::size_t sizeAbove)
{
    auto level = makeOwned<Level>();
    if (!level || !level->listing.open(m_path)) {
        return false;
    }
    level->pathSize = sizeAbove;
    level->above = std::move(m_level);
    m_level = std::move(level);
    return true;
}

void Removal::leave()
{
    m_path.truncate(m_level->pathSize);
    Owned<Level> above = std::move(m_level->above);
    m_level = std::move(above);
}

// Removes the current folder, which is empty if everything in it could be removed.
bool Removal::removeCurrent()
{
    m_level->listing.close();
    return RemoveDirectoryW(wide(m_path.data()));
}

void Removal::removeEntry()
{
    const FolderListing &entry = m_level->listing;
    const DWORD attributes = entry.attributes();
    const std::size_t sizeAbove = m_path.size();
    if (!m_path.append(u"\\", 1) || !m_path.append(entry.name(), entry.nameSize())) {
        return;
    }
    makeWritable(m_path, attributes);
    const bool folder = (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    if (folder && (attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0 && enter(sizeAbove)) {
        return;
    }
    if (folder) {
        RemoveDirectoryW(wide(m_path.data()));
    } else {
        DeleteFileW(wide(m_path.data()));
    }
    m_path.truncate(sizeAbove);
}

// On Windows, enter() notices a link by its handle, too; Wine opens the target.
bool isLink(const Text &path)
{
    const DWORD attributes = GetFileAttributesW(wide(path.data()));
    return attributes != INVALID_FILE_ATTRIBUTES
        && (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
}

// Continues after a failure, so that as little as possible is left.
bool Removal::remove(const Text &root, HANDLE mine)
{
    if (isLink(root) || !m_path.append(root) || !enter(root.size())
        || (mine != nullptr && !haveSameOwner(m_level->listing.handle(), mine))) {
        return false;
    }
    bool removed = false;
    while (m_level && !m_path.isEmpty() && GetTickCount64() <= m_deadline) {
        if (m_level->listing.next()) {
            removeEntry();
        } else {
            removed = removeCurrent();
            leave();
        }
    }
    return !m_level && removed;
}

bool isGone(const Text &path)
{
    if (GetFileAttributesW(wide(path.data())) != INVALID_FILE_ATTRIBUTES) {
        return false;
    }
    const DWORD error = GetLastError();
    return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND;
}

} // namespace

bool removeOwnTree(const Text &path, HANDLE mine, std::uint64_t deadline)
{
    return Removal(deadline).remove(path, mine) || isGone(path);
}

bool removeTree(const Text &path)
{
    const auto removeOnce = [&path] {
        return Removal(noDeadline).remove(path) || isGone(path);
    };
    for (const DWORD pause : pauses) {
        if (removeOnce()) {
            return true;
        }
        Sleep(pause);
    }
    return removeOnce();
}

} // namespace sfx
