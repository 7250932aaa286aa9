// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/console.h"

namespace sfx {

namespace {

constexpr DWORD standardIds[streamCount] = {STD_INPUT_HANDLE, STD_OUTPUT_HANDLE, STD_ERROR_HANDLE};

constinit HANDLE handles[streamCount] = {};

// GetFileType() would tell too, but it waits while another process reads from the same pipe.
bool isOpen(HANDLE handle)
{
    DWORD flags = 0;
    return handle != nullptr && handle != INVALID_HANDLE_VALUE
        && GetHandleInformation(handle, &flags);
}

HANDLE openDevice(StandardStream stream)
{
    SECURITY_ATTRIBUTES inheritable = {sizeof inheritable, nullptr, TRUE};
    const HANDLE handle = CreateFileW(stream == StandardStream::Input ? L"CONIN$" : L"CONOUT$",
                                      GENERIC_READ | GENERIC_WRITE,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE, &inheritable,
                                      OPEN_EXISTING, 0, nullptr);
    return handle == INVALID_HANDLE_VALUE ? nullptr : handle;
}

HANDLE handleFrom(StreamSource source, StandardStream stream, HANDLE callers, HANDLE attached)
{
    switch (source) {
    case StreamSource::Caller:
        return callers;
    case StreamSource::Attached:
        return attached;
    case StreamSource::Device:
        return openDevice(stream);
    case StreamSource::None:
        break;
    }
    return nullptr;
}

} // namespace

bool isConsoleProgram()
{
    const auto *image = reinterpret_cast<const unsigned char *>(GetModuleHandleW(nullptr));
    const auto *dos = reinterpret_cast<const IMAGE_DOS_HEADER *>(image);
    const auto *headers = reinterpret_cast<const IMAGE_NT_HEADERS *>(image + dos->e_lfanew);
    return headers->OptionalHeader.Subsystem == IMAGE_SUBSYSTEM_WINDOWS_CUI;
}

// AttachConsole() opens three new handles and sets them as the standard handles, unless the caller
// has used STARTF_USESTDHANDLES. The Windows command prompt redirects without it, by inheritance
// alone, so its redirections are noted before and set again after that.
void findStandardHandles()
{
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    GetStartupInfoW(&startup);
    // The fields of a program for the console are always handles: Windows has replaced the others.
    const bool isForConsole = isConsoleProgram();
    HANDLE callers[streamCount] = {};
    StreamFacts facts[streamCount];
    for (unsigned i = 0; i < streamCount; ++i) {
        callers[i] = GetStdHandle(standardIds[i]);
        const bool isHandle = isForConsole
            || isMeantAsHandle(static_cast<StandardStream>(i), startup.dwFlags);
        facts[i].callersIsOpen = isHandle && isOpen(callers[i]);
    }
    const bool hasConsole = !isForConsole && AttachConsole(ATTACH_PARENT_PROCESS);
    for (unsigned i = 0; i < streamCount; ++i) {
        const HANDLE attached = GetStdHandle(standardIds[i]);
        facts[i].hasConsole = hasConsole;
        facts[i].attachedIsOpen = attached != callers[i] && isOpen(attached);
        const auto stream = static_cast<StandardStream>(i);
        handles[i] = handleFrom(chooseStream(facts[i]), stream, callers[i], attached);
        if (hasConsole) {
            SetStdHandle(standardIds[i], handles[i]);
        }
    }
}

DWORD consoleFlag()
{
    DWORD first = 0;
    const bool hasConsole = GetConsoleProcessList(&first, 1) != 0;
    return isConsoleProgram() && !hasConsole ? DETACHED_PROCESS : 0;
}

HANDLE standardHandle(StandardStream stream)
{
    return handles[static_cast<unsigned>(stream)];
}

} // namespace sfx
