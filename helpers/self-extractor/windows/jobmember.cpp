// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/jobmember.h"

#include "helpers/self-extractor/start/winpath.h"
#include "helpers/self-extractor/windows/systemlibrary.h"

#include <winternl.h>

namespace sfx {

namespace {

constexpr DWORD longestPath = 32768; // Windows' limit in UTF-16 units, with the terminator

// PROCESSINFOCLASS, Windows 8.1 and later: a UNICODE_STRING and its units. MinGW's headers do not
// define it.
constexpr auto commandLineInformation = static_cast<PROCESSINFOCLASS>(60);

enum class Answer { No, Yes, Unknown };

// The path with the device's name: it needs no drive letter.
Answer imageLiesIn(const Text &folder, HANDLE process)
{
    Array<char16_t> units;
    Text image;
    DWORD size = longestPath;
    if (!units.allocate(longestPath)
        || !QueryFullProcessImageNameW(process, PROCESS_NAME_NATIVE, wide(units.data()), &size)
        || !image.assign(units.data(), size)) {
        return Answer::Unknown;
    }
    return pointsInto(image, folder) ? Answer::Yes : Answer::No;
}

bool commandLineNames(const Text &folder, HANDLE process)
{
    const auto query
        = SystemLibrary(L"ntdll.dll")
              .function<decltype(&::NtQueryInformationProcess)>("NtQueryInformationProcess");
    constexpr ULONG capacity = sizeof(UNICODE_STRING) + longestPath * sizeof(char16_t);
    Array<UNICODE_STRING> buffer;
    ULONG size = 0;
    Text line;
    if (query == nullptr || !buffer.allocate(capacity / sizeof(UNICODE_STRING) + 1)
        || query(process, commandLineInformation, buffer.data(), capacity, &size) < 0) {
        return false;
    }
    const UNICODE_STRING &found = buffer[0];
    return line.assign(reinterpret_cast<const char16_t *>(found.Buffer),
                       found.Length / sizeof(char16_t))
        && pointsInto(line, folder);
}

} // namespace

bool worksIn(const Text &folder, DWORD processId)
{
    const Handle process(OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, processId));
    if (!process) {
        return true; // another user's, or about to leave the job, but its files may still be open
    }
    const Answer image = imageLiesIn(folder, process.get());
    return image != Answer::No || commandLineNames(folder, process.get());
}

} // namespace sfx
