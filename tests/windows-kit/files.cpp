// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/windows-kit/files.h"

#include <algorithm>

#include <windows.h>

namespace kit {

namespace {

constexpr DWORD shareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

} // namespace

std::wstring extended(const std::wstring &path)
{
    if (path.compare(0, 4, L"\\\\?\\") == 0) {
        return path;
    }
    return path.compare(0, 2, L"\\\\") == 0 ? L"\\\\?\\UNC" + path.substr(1) : L"\\\\?\\" + path;
}

bool exists(const std::wstring &path)
{
    return GetFileAttributesW(extended(path).c_str()) != INVALID_FILE_ATTRIBUTES;
}

std::uint64_t sizeOf(const std::wstring &path)
{
    WIN32_FILE_ATTRIBUTE_DATA data = {};
    GetFileAttributesExW(extended(path).c_str(), GetFileExInfoStandard, &data);
    return (std::uint64_t{data.nFileSizeHigh} << 32) | data.nFileSizeLow;
}

std::string readFile(const std::wstring &path)
{
    const HANDLE file = CreateFileW(extended(path).c_str(), GENERIC_READ, shareAll, nullptr,
                                    OPEN_EXISTING, 0, nullptr);
    std::string content;
    if (file == INVALID_HANDLE_VALUE) {
        return content;
    }
    std::vector<char> buffer(1 << 20);
    DWORD got = 0;
    while (ReadFile(file, buffer.data(), static_cast<DWORD>(buffer.size()), &got, nullptr)
           && got != 0) {
        content.append(buffer.data(), got);
    }
    CloseHandle(file);
    return content;
}

bool writeFile(const std::wstring &path, const std::string &content)
{
    const HANDLE file = CreateFileW(extended(path).c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr,
                                    CREATE_ALWAYS, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        return false;
    }
    DWORD written = 0;
    const auto size = static_cast<DWORD>(content.size());
    const bool done = WriteFile(file, content.data(), size, &written, nullptr) && written == size;
    return CloseHandle(file) && done;
}

bool copyFile(const std::wstring &from, const std::wstring &to)
{
    return CopyFileW(extended(from).c_str(), extended(to).c_str(), FALSE);
}

bool makeFolder(const std::wstring &path)
{
    if (CreateDirectoryW(extended(path).c_str(), nullptr)
        || GetLastError() == ERROR_ALREADY_EXISTS) {
        return true;
    }
    const std::wstring parent = parentOf(path);
    return GetLastError() == ERROR_PATH_NOT_FOUND && parent != path && makeFolder(parent)
        && CreateDirectoryW(extended(path).c_str(), nullptr);
}

void removeFolder(const std::wstring &path)
{
    for (const std::wstring &name : namesIn(path)) {
        const std::wstring item = path + L'\\' + name;
        const DWORD attributes = GetFileAttributesW(extended(item).c_str());
        const bool isFolder = (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
        const bool isLink = (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
        if (isFolder && !isLink) {
            removeFolder(item);
            continue;
        }
        SetFileAttributesW(extended(item).c_str(), FILE_ATTRIBUTE_NORMAL);
        if (isFolder) {
            RemoveDirectoryW(extended(item).c_str());
        } else {
            DeleteFileW(extended(item).c_str());
        }
    }
    RemoveDirectoryW(extended(path).c_str());
}

std::vector<std::wstring> namesIn(const std::wstring &folder, const std::wstring &pattern)
{
    std::vector<std::wstring> names;
    WIN32_FIND_DATAW found = {};
    const HANDLE search = FindFirstFileW((extended(folder) + L'\\' + pattern).c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) {
        return names;
    }
    do {
        const std::wstring name = found.cFileName;
        if (name != L"." && name != L"..") {
            names.push_back(name);
        }
    } while (FindNextFileW(search, &found));
    FindClose(search);
    std::sort(names.begin(), names.end());
    return names;
}

std::wstring parentOf(const std::wstring &path)
{
    const std::size_t at = path.find_last_of(L'\\');
    return at == std::wstring::npos ? path : path.substr(0, at);
}

std::wstring ownProgram()
{
    std::wstring path(32768, L'\0');
    path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
    return path;
}

std::wstring systemProgram(const std::wstring &name)
{
    return variable(L"SystemRoot") + L"\\System32\\" + name;
}

std::wstring variable(const wchar_t *name)
{
    std::wstring value(32768, L'\0');
    value.resize(GetEnvironmentVariableW(name, value.data(), static_cast<DWORD>(value.size())));
    return value;
}

} // namespace kit
