// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/privatefolder.h"

#include "helpers/self-extractor/start/applicationfolder.h"
#include "helpers/self-extractor/start/privatename.h"
#include "helpers/self-extractor/start/winpath.h"
#include "helpers/self-extractor/windows/entryhandle.h"
#include "helpers/self-extractor/windows/random.h"
#include "helpers/self-extractor/windows/removal.h"
#include "helpers/self-extractor/windows/stalefolders.h"
#include "helpers/self-extractor/windows/useronly.h"

namespace sfx {

namespace {

constexpr unsigned attempts = 16;

bool isTaken(DWORD error)
{
    return error == ERROR_ALREADY_EXISTS || error == ERROR_FILE_EXISTS;
}

// Removes what a killed start has left under this name. The owner of a new file tells which files
// are ours; `unused` is a path for it.
bool removeLeftOver(const Text &lock, const Text &unused, SECURITY_ATTRIBUTES *security)
{
    LockFile mine;
    if (!mine.create(unused, security)) {
        return false;
    }
    const bool removed = removeStaleFolder(lock, mine.handle());
    mine.discard();
    return removed;
}

} // namespace

bool PrivateFolder::makePath(const Text &temporaryFolder, const Text &name, RootPath &path)
{
    return path.plain.append(temporaryFolder) && path.plain.append(name)
        && toExtendedPath(path.plain, path.extended) && path.lock.append(path.extended)
        && path.lock.append(lockSuffix);
}

bool PrivateFolder::makeStablePath(const Text &temporaryFolder, const Text &producedFile,
                                   const Text &rights, RootPath &path)
{
    Text extended;
    Text name;
    WIN32_FILE_ATTRIBUTE_DATA data = {};
    if (!toExtendedPath(producedFile, extended)
        || !GetFileAttributesExW(wide(extended.data()), GetFileExInfoStandard, &data)) {
        return false;
    }
    const auto joined = [](DWORD high, DWORD low) {
        return (std::uint64_t{high} << 32) | low;
    };
    unsigned char bytes[privateNameBytes];
    hashProducedFile(
        {producedFile, joined(data.nFileSizeHigh, data.nFileSizeLow),
         joined(data.ftLastWriteTime.dwHighDateTime, data.ftLastWriteTime.dwLowDateTime), rights},
        bytes);
    return makePrivateName(bytes, name) && makePath(temporaryFolder, name, path);
}

bool PrivateFolder::makeRandomPath(const Text &temporaryFolder, RootPath &path)
{
    unsigned char random[privateNameBytes];
    Text name;
    if (!randomBytes(random, sizeof random)) {
        return false;
    }
    return makePrivateName(random, name) && makePath(temporaryFolder, name, path);
}

// Both calls fail if the name exists, so no other user can have prepared the folder.
bool PrivateFolder::createAt(RootPath &path, SECURITY_ATTRIBUTES *security)
{
    if (!m_lock.create(path.lock, security)) {
        return false;
    }
    if (createFolder(path.extended, security, m_guard)) {
        m_root = std::move(path.plain);
        return true;
    }
    const DWORD error = GetLastError();
    m_lock.discard();
    SetLastError(error);
    return false;
}

bool PrivateFolder::createRoot(const Text &temporaryFolder, const Text &producedFile)
{
    UserOnly security;
    RootPath stable;
    const bool hasStable = makeStablePath(temporaryFolder, producedFile, security.rights(), stable);
    if (hasStable && createAt(stable, security.attributes())) {
        return true;
    }
    bool canBeFreed = hasStable && isTaken(GetLastError());
    for (unsigned i = 0; i < attempts; ++i) {
        RootPath random;
        if (!makeRandomPath(temporaryFolder, random)) {
            return false;
        }
        if (canBeFreed && removeLeftOver(stable.lock, random.lock, security.attributes())
            && createAt(stable, security.attributes())) {
            return true;
        }
        canBeFreed = false;
        if (createAt(random, security.attributes())) {
            return true;
        }
        if (!isTaken(GetLastError())) {
            return false;
        }
    }
    return false;
}

bool PrivateFolder::create(const Text &temporaryFolder, const Text &applicationName,
                           const Text &program, const Text &producedFile)
{
    if (!createRoot(temporaryFolder, producedFile)) {
        return false;
    }
    Text extended;
    Handle application;
    if (m_application.append(m_root) && m_application.append(u"\\")
        && m_application.append(applicationFolderName(m_root.size(), applicationName, program))
        && toExtendedPath(m_application, extended)
        && createFolder(extended, nullptr, application)) {
        return true;
    }
    const DWORD error = GetLastError();
    remove();
    SetLastError(error);
    return false;
}

void PrivateFolder::remove()
{
    Text extended;
    if (m_root.isEmpty()) {
        return;
    }
    if (toExtendedPath(m_root, extended) && removeTree(extended, m_guard)) {
        m_lock.discard();
    } else {
        m_lock.release();
    }
    m_guard.reset();
    m_root = Text();
}

} // namespace sfx
