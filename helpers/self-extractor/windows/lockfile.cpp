// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/lockfile.h"

namespace sfx {

void discardFile(Handle &file)
{
    // By handle: by then, another process may own a file of that name.
    FILE_DISPOSITION_INFO removal = {TRUE};
    SetFileInformationByHandle(file.get(), FileDispositionInfo, &removal, sizeof removal);
    file.reset();
}

bool LockFile::open(const Text &path, SECURITY_ATTRIBUTES *security, DWORD disposition)
{
    m_file.reset(CreateFileW(wide(path.data()), GENERIC_READ | DELETE, 0, security, disposition,
                             FILE_ATTRIBUTE_NORMAL | FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
    return static_cast<bool>(m_file);
}

bool LockFile::create(const Text &path, SECURITY_ATTRIBUTES *security)
{
    return open(path, security, CREATE_NEW)
        && SetHandleInformation(m_file.get(), HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT);
}

} // namespace sfx
