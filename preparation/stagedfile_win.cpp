// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "preparation/stagedfile.h"

#include "helpers/pe/nativepath.h"
#include "platform/nativepath.h"

#include <windows.h>

namespace {

// What SetFileAttributesW() can set.
constexpr DWORD settableAttributes = FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN
    | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_ARCHIVE | FILE_ATTRIBUTE_NOT_CONTENT_INDEXED;

std::wstring nameOf(const QString &path)
{
    return pe::extendedPath(toNativePath(path));
}

QString systemText()
{
    return qt_error_string(static_cast<int>(GetLastError()));
}

bool setTime(const std::wstring &path, qint64 modified)
{
    constexpr qint64 from1601to1970 = 116444736000000000;
    const auto ticks = static_cast<quint64>(modified + from1601to1970);
    const FILETIME time = {static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
    HANDLE file = CreateFileW(path.c_str(), FILE_WRITE_ATTRIBUTES,
                              FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                              OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        return false;
    }
    const bool isDone = SetFileTime(file, nullptr, nullptr, &time) != 0;
    const DWORD error = GetLastError();
    CloseHandle(file);
    SetLastError(error);
    return isDone;
}

bool setAttributes(const std::wstring &path, const std::optional<quint32> &attributes)
{
    if (!attributes) {
        return true;
    }
    const DWORD settable = *attributes & settableAttributes;
    return SetFileAttributesW(path.c_str(), settable != 0 ? settable : FILE_ATTRIBUTE_NORMAL) != 0;
}

struct RunningCopy
{
    const CopyProgress &progress;
    qint64 reported = 0;
};

DWORD CALLBACK onCopied(LARGE_INTEGER, LARGE_INTEGER copied, LARGE_INTEGER, LARGE_INTEGER, DWORD,
                        DWORD, HANDLE, HANDLE, void *data)
{
    auto &copy = *static_cast<RunningCopy *>(data);
    const qint64 bytes = copied.QuadPart - copy.reported;
    copy.reported = copied.QuadPart;
    return copy.progress(bytes) ? PROGRESS_CONTINUE : PROGRESS_CANCEL;
}

} // namespace

bool linkFile(const QString &source, const QString &target)
{
    return CreateHardLinkW(nameOf(target).c_str(), nameOf(source).c_str(), nullptr) != 0;
}

QString copyFile(const QString &source, const QString &target, const PlannedFile &planned,
                 const CopyProgress &progress)
{
    const std::wstring name = nameOf(target);
    RunningCopy copy{progress};
    // An encrypted file may have to go to a disk that knows no encryption.
    if (!CopyFileExW(nameOf(source).c_str(), name.c_str(), onCopied, &copy, nullptr,
                     COPY_FILE_FAIL_IF_EXISTS | COPY_FILE_ALLOW_DECRYPTED_DESTINATION)) {
        return systemText();
    }
    progress(planned.size - copy.reported); // small files are copied without a report
    // The attributes come last, because a read-only file does not let its time be set everywhere.
    const bool isDone = SetFileAttributesW(name.c_str(), FILE_ATTRIBUTE_NORMAL) != 0
        && setTime(name, planned.modified) && setAttributes(name, planned.attributes);
    return isDone ? QString() : systemText();
}

qint64 freeBytesAt(const QString &folder)
{
    ULARGE_INTEGER free = {};
    return GetDiskFreeSpaceExW((nameOf(folder) + L'\\').c_str(), &free, nullptr, nullptr)
        ? static_cast<qint64>(free.QuadPart)
        : 0;
}

QString makeFolder(const QString &path)
{
    return CreateDirectoryW(nameOf(path).c_str(), nullptr) ? QString() : systemText();
}

QString finishFolder(const QString &path, const PlannedFolder &planned)
{
    const std::wstring name = nameOf(path);
    const bool isDone = setTime(name, planned.modified) && setAttributes(name, planned.attributes);
    return isDone ? QString() : systemText();
}

void openFolderForRemoval(const QString &path)
{
    SetFileAttributesW(nameOf(path).c_str(), FILE_ATTRIBUTE_NORMAL);
}

bool removeStagedFile(const QString &path, bool isCopy)
{
    const std::wstring name = nameOf(path);
    if (isCopy) {
        SetFileAttributesW(name.c_str(), FILE_ATTRIBUTE_NORMAL);
    }
    return DeleteFileW(name.c_str()) || GetLastError() == ERROR_FILE_NOT_FOUND
        || GetLastError() == ERROR_PATH_NOT_FOUND;
}

bool removeStagedFolder(const QString &path)
{
    return RemoveDirectoryW(nameOf(path).c_str()) || GetLastError() == ERROR_FILE_NOT_FOUND
        || GetLastError() == ERROR_PATH_NOT_FOUND;
}
