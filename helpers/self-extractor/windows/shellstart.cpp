// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/shellstart.h"

#include "helpers/self-extractor/windows/systemlibrary.h"

#include <objbase.h>
#include <shellapi.h>

namespace sfx {

namespace {

// The shell may use extensions that need COM, as a thread with windows has it.
class ComForShell
{
public:
    ComForShell()
    {
        if (const auto initialize = ole32.function<decltype(&::CoInitializeEx)>("CoInitializeEx")) {
            m_isInitialized
                = SUCCEEDED(initialize(nullptr, COINIT_APARTMENTTHREADED | COINIT_DISABLE_OLE1DDE));
        }
    }
    ComForShell(const ComForShell &) = delete;
    ComForShell &operator=(const ComForShell &) = delete;
    ~ComForShell()
    {
        const auto uninitialize = ole32.function<decltype(&::CoUninitialize)>("CoUninitialize");
        if (m_isInitialized && uninitialize != nullptr) {
            uninitialize();
        }
    }

private:
    SystemLibrary ole32{L"ole32.dll"};
    bool m_isInitialized = false;
};

int wayToShow()
{
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    GetStartupInfoW(&startup);
    return (startup.dwFlags & STARTF_USESHOWWINDOW) != 0 ? startup.wShowWindow : SW_SHOWNORMAL;
}

} // namespace

bool startThroughShell(const ShellStart &start, Handle &process)
{
    SHELLEXECUTEINFOW info = {};
    info.cbSize = sizeof info;
    // A downloaded file runs already; the user is not asked about its origin a second time.
    info.fMask = SEE_MASK_NOCLOSEPROCESS | SEE_MASK_NOASYNC | SEE_MASK_FLAG_NO_UI
        | SEE_MASK_NOZONECHECKS;
    info.hwnd = start.owner;
    info.lpVerb = start.verb;
    info.lpFile = wide(start.file.data());
    info.lpParameters = wide(start.arguments);
    info.lpDirectory = start.folder.isEmpty() ? nullptr : wide(start.folder.data());
    info.nShow = wayToShow();
    DWORD error = ERROR_PROC_NOT_FOUND;
    bool started = false;
    {
        const ComForShell com;
        const auto execute = SystemLibrary(L"shell32.dll")
                                 .function<decltype(&::ShellExecuteExW)>("ShellExecuteExW");
        if (execute != nullptr) {
            started = execute(&info);
            error = GetLastError();
        }
    }
    process.reset(info.hProcess);
    SetLastError(error);
    return started;
}

bool isElevated()
{
    HANDLE rawToken = nullptr;
    if (!OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &rawToken)) {
        return false;
    }
    const Handle token(rawToken);
    TOKEN_ELEVATION elevation = {};
    DWORD size = 0;
    return GetTokenInformation(token.get(), TokenElevation, &elevation, sizeof elevation, &size)
        && elevation.TokenIsElevated != 0;
}

} // namespace sfx
