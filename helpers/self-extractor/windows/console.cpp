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

HANDLE openDevice(Stream stream)
{
    SECURITY_ATTRIBUTES inheritable = {sizeof inheritable, nullptr, TRUE};
    const HANDLE handle = CreateFileW(stream == Stream::Input ? L"CONIN$" : L"CONOUT$",
                                      GENERIC_READ | GENERIC_WRITE,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE, &inheritable,
                                      OPEN_EXISTING, 0, nullptr);
    return handle == INVALID_HANDLE_VALUE ? nullptr : handle;
}

HANDLE handleFrom(StreamSource source, Stream stream, HANDLE callers, HANDLE attached)
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

// AttachConsole() opens three new handles and sets them as the standard handles, unless the caller
// has used STARTF_USESTDHANDLES. The Windows command prompt redirects without it, by inheritance
// alone, so its redirections are noted before and set again after that.
void joinCallersConsole()
{
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    GetStartupInfoW(&startup);
    HANDLE callers[streamCount] = {};
    StreamFacts facts[streamCount];
    for (unsigned i = 0; i < streamCount; ++i) {
        callers[i] = GetStdHandle(standardIds[i]);
        facts[i].callersIsOpen = isMeantAsHandle(static_cast<Stream>(i), startup.dwFlags)
            && isOpen(callers[i]);
    }
    const bool hasConsole = AttachConsole(ATTACH_PARENT_PROCESS);
    for (unsigned i = 0; i < streamCount; ++i) {
        const HANDLE attached = GetStdHandle(standardIds[i]);
        facts[i].hasConsole = hasConsole;
        facts[i].attachedIsOpen = attached != callers[i] && isOpen(attached);
        const auto stream = static_cast<Stream>(i);
        handles[i] = handleFrom(chooseStream(facts[i]), stream, callers[i], attached);
        if (hasConsole) {
            SetStdHandle(standardIds[i], handles[i]);
        }
    }
}

HANDLE standardHandle(Stream stream)
{
    return handles[static_cast<unsigned>(stream)];
}

} // namespace sfx
