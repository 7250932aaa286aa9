// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/privatefolder.h"

#include "helpers/self-extractor/core/winpath.h"
#include "helpers/self-extractor/windows/removal.h"
#include "helpers/self-extractor/windows/systemlibrary.h"
#include "helpers/self-extractor/windows/useronly.h"

#include <ntsecapi.h>

namespace sfx {

namespace {

constexpr unsigned attempts = 16;
constexpr DWORD pathCapacity = 32768;

// The user's temporary folder, absolute, with a separator at its end.
bool findTemporaryFolder(Text &folder)
{
    using GetTempPathFunction = DWORD(WINAPI *)(DWORD, LPWSTR);
    Array<char16_t> raw;
    Array<char16_t> full;
    if (!raw.allocate(pathCapacity) || !full.allocate(pathCapacity)) {
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return false;
    }
    // Newer Windows gives services a folder of their own through the newer function.
    auto getTempPath = SystemLibrary(L"kernel32.dll").function<GetTempPathFunction>("GetTempPath2W");
    if (getTempPath == nullptr) {
        getTempPath = GetTempPathW;
    }
    const DWORD rawSize = getTempPath(pathCapacity, wide(raw.data()));
    if (rawSize == 0 || rawSize >= pathCapacity) {
        return false;
    }
    const DWORD size = GetFullPathNameW(wide(raw.data()), pathCapacity, wide(full.data()), nullptr);
    if (size == 0 || size >= pathCapacity || !folder.assign(full.data(), size)) {
        return false;
    }
    return folder.data()[size - 1] == u'\\' || folder.append(u"\\");
}

// "kp-" and 20 random hexadecimal digits.
bool makeName(Text &name)
{
    unsigned char random[10];
    char16_t digits[2 * sizeof random];
    if (!RtlGenRandom(random, sizeof random)) {
        SetLastError(ERROR_NOT_READY);
        return false;
    }
    for (std::size_t i = 0; i < sizeof random; ++i) {
        digits[2 * i] = u"0123456789abcdef"[random[i] >> 4];
        digits[2 * i + 1] = u"0123456789abcdef"[random[i] & 15];
    }
    return name.assign(u"kp-", 3) && name.append(digits, ARRAYSIZE(digits));
}

// CreateDirectoryW fails when the name exists: nobody can have prepared the folder for us.
bool makeRandomFolder(const Text &parent, Text &path)
{
    UserOnly security;
    for (unsigned i = 0; i < attempts; ++i) {
        Text name;
        Text extended;
        if (!makeName(name) || !path.assign(parent.data(), parent.size()) || !path.append(name)
            || !toExtendedPath(path, extended)) {
            return false;
        }
        if (CreateDirectoryW(wide(extended.data()), security.attributes())) {
            return true;
        }
        if (GetLastError() != ERROR_ALREADY_EXISTS) {
            return false;
        }
    }
    return false;
}

} // namespace

bool PrivateFolder::create(const Text &applicationName)
{
    Text temporary;
    Text root;
    Text extended;
    if (!findTemporaryFolder(temporary) || !makeRandomFolder(temporary, root)) {
        return false;
    }
    m_root = std::move(root);
    if (m_application.append(m_root) && m_application.append(u"\\")
        && m_application.append(applicationName) && toExtendedPath(m_application, extended)
        && CreateDirectoryW(wide(extended.data()), nullptr)) {
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
    if (!m_root.isEmpty() && toExtendedPath(m_root, extended)) {
        removeTree(extended);
    }
    m_root = Text();
}

} // namespace sfx
