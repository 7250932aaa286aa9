// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/lockfile.h"

namespace sfx {

namespace {

HANDLE openAlone(const Text &path, SECURITY_ATTRIBUTES *security, DWORD disposition)
{
    return CreateFileW(wide(path.data()), GENERIC_READ | DELETE, 0, security, disposition,
                       FILE_ATTRIBUTE_NORMAL | FILE_FLAG_OPEN_REPARSE_POINT, nullptr);
}

} // namespace

void discardFile(Handle &file)
{
    FILE_DISPOSITION_INFO removal = {TRUE};
    SetFileInformationByHandle(file.get(), FileDispositionInfo, &removal, sizeof removal);
    file.reset();
}

bool LockFile::create(const Text &path, SECURITY_ATTRIBUTES *security)
{
    m_file.reset(openAlone(path, security, CREATE_NEW));
    return m_file && SetHandleInformation(m_file.get(), HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT);
}

bool LockFile::take(const Text &path)
{
    m_file.reset(openAlone(path, nullptr, OPEN_EXISTING));
    return static_cast<bool>(m_file);
}

bool LockFile::acquire(const Text &path, SECURITY_ATTRIBUTES *security)
{
    m_file.reset(openAlone(path, security, OPEN_ALWAYS));
    return static_cast<bool>(m_file);
}

void LockFile::discard()
{
    // By handle: by then, another process may own a file of that name.
    discardFile(m_file);
}

} // namespace sfx
