// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/privatefolder.h"

#include "helpers/self-extractor/start/applicationfolder.h"
#include "helpers/self-extractor/start/privatename.h"
#include "helpers/self-extractor/start/winpath.h"
#include "helpers/self-extractor/windows/random.h"
#include "helpers/self-extractor/windows/removal.h"
#include "helpers/self-extractor/windows/useronly.h"

namespace sfx {

namespace {

constexpr unsigned attempts = 16;

[[nodiscard]] bool makeRandomPath(const Text &parent, Text &path, Text &extended)
{
    unsigned char random[privateNameBytes];
    Text name;
    if (!randomBytes(random, sizeof random)) {
        return false;
    }
    return makePrivateName(random, name) && path.assign(parent.data(), parent.size())
        && path.append(name) && toExtendedPath(path, extended);
}

[[nodiscard]] bool createFolder(const Text &path, SECURITY_ATTRIBUTES *security)
{
    return CreateDirectoryW(wide(path.data()), security);
}

} // namespace

// Both calls fail if the name exists, so no other user can have prepared the folder.
bool PrivateFolder::createRoot(const Text &temporaryFolder)
{
    UserOnly security;
    for (unsigned i = 0; i < attempts; ++i) {
        Text path;
        Text extended;
        Text lockPath;
        if (!makeRandomPath(temporaryFolder, path, extended) || !lockPath.append(extended)
            || !lockPath.append(lockSuffix)) {
            return false;
        }
        if (m_lock.create(lockPath, security.attributes())) {
            if (createFolder(extended, security.attributes())) {
                m_root = std::move(path);
                return true;
            }
            const DWORD error = GetLastError();
            m_lock.discard();
            SetLastError(error);
        }
        if (GetLastError() != ERROR_ALREADY_EXISTS && GetLastError() != ERROR_FILE_EXISTS) {
            return false;
        }
    }
    return false;
}

bool PrivateFolder::create(const Text &temporaryFolder, const Text &applicationName,
                           const Text &program)
{
    if (!createRoot(temporaryFolder)) {
        return false;
    }
    Text extended;
    if (m_application.append(m_root) && m_application.append(u"\\")
        && m_application.append(applicationFolderName(m_root.size(), applicationName, program))
        && toExtendedPath(m_application, extended) && createFolder(extended, nullptr)) {
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
    if (toExtendedPath(m_root, extended) && removeTree(extended)) {
        m_lock.discard();
    } else {
        m_lock.release();
    }
    m_root = Text();
}

} // namespace sfx
