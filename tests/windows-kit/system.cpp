// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/windows-kit/system.h"

#include "tests/windows-kit/files.h"
#include "tests/windows-kit/security.h"
#include "tests/windows-kit/text.h"

#include <windows.h>

namespace kit {

namespace {

constexpr const wchar_t *versionKey = L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion";
constexpr const wchar_t *policyKey
    = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Policies\\System";
constexpr const wchar_t *codePageKey = L"SYSTEM\\CurrentControlSet\\Control\\Nls\\CodePage";
constexpr const wchar_t *defenderKey
    = L"SOFTWARE\\Microsoft\\Windows Defender\\Real-Time Protection";

template <typename Function>
Function systemFunction(const wchar_t *library, const char *name)
{
    const HMODULE module = GetModuleHandleW(library);
    return reinterpret_cast<Function>(
        reinterpret_cast<void *>(module != nullptr ? GetProcAddress(module, name) : nullptr));
}

std::string registryText(const wchar_t *key, const wchar_t *value)
{
    wchar_t text[256] = L"";
    DWORD size = sizeof text;
    RegGetValueW(HKEY_LOCAL_MACHINE, key, value, RRF_RT_REG_SZ, nullptr, text, &size);
    return utf8(text);
}

// Returns false if there is no such number.
bool registryNumber(const wchar_t *key, const wchar_t *value, DWORD &number)
{
    DWORD size = sizeof number;
    return RegGetValueW(HKEY_LOCAL_MACHINE, key, value, RRF_RT_REG_DWORD, nullptr, &number, &size)
        == ERROR_SUCCESS;
}

std::string windowsVersion()
{
    using GetVersionFunction = LONG(WINAPI *)(OSVERSIONINFOW *);
    OSVERSIONINFOW version = {};
    version.dwOSVersionInfoSize = sizeof version;
    if (const auto getVersion = systemFunction<GetVersionFunction>(L"ntdll.dll", "RtlGetVersion")) {
        getVersion(&version);
    }
    DWORD revision = 0;
    registryNumber(versionKey, L"UBR", revision);
    return std::to_string(version.dwMajorVersion) + '.' + std::to_string(version.dwMinorVersion)
        + '.' + std::to_string(version.dwBuildNumber) + '.' + std::to_string(revision) + ", "
        + registryText(versionKey, L"ProductName") + ' '
        + registryText(versionKey, L"DisplayVersion");
}

std::string nameOfMachine(USHORT machine)
{
    switch (machine) {
    case IMAGE_FILE_MACHINE_AMD64:
        return "x64";
    case 0xaa64: // IMAGE_FILE_MACHINE_ARM64
        return "ARM64";
    default:
        return hex(machine);
    }
}

std::string architecture()
{
    using IsWow64Function = BOOL(WINAPI *)(HANDLE, USHORT *, USHORT *);
    USHORT process = 0;
    USHORT machine = IMAGE_FILE_MACHINE_AMD64;
    if (const auto isWow64 = systemFunction<IsWow64Function>(L"kernel32.dll", "IsWow64Process2")) {
        isWow64(GetCurrentProcess(), &process, &machine);
    }
    SYSTEM_INFO info = {};
    GetNativeSystemInfo(&info);
    return nameOfMachine(machine) + ", " + std::to_string(info.dwNumberOfProcessors)
        + " processors";
}

std::string memory()
{
    MEMORYSTATUSEX status = {};
    status.dwLength = sizeof status;
    GlobalMemoryStatusEx(&status);
    return std::to_string(status.ullAvailPhys >> 20) + " of "
        + std::to_string(status.ullTotalPhys >> 20) + " MiB free";
}

std::string elevation()
{
    const char *const type = elevationType() == Elevation::Full ? "by UAC"
        : elevationType() == Elevation::Limited                 ? "UAC can elevate"
                                                                : "no UAC for this user";
    return std::string(isElevated() ? "elevated, " : "not elevated, ") + type;
}

std::string temporaryDrive()
{
    const std::wstring folder = variable(L"TEMP");
    wchar_t root[MAX_PATH] = L"";
    wchar_t fileSystem[64] = L"unknown";
    ULARGE_INTEGER space = {};
    GetVolumePathNameW(folder.c_str(), root, MAX_PATH);
    GetVolumeInformationW(root, nullptr, 0, nullptr, nullptr, nullptr, fileSystem,
                          ARRAYSIZE(fileSystem));
    GetDiskFreeSpaceExW(folder.c_str(), &space, nullptr, nullptr);
    return utf8(folder) + ", " + utf8(fileSystem) + ", drive type "
        + std::to_string(GetDriveTypeW(root)) + ", " + std::to_string(space.QuadPart / 1000000)
        + " MB free";
}

std::string serviceState(const wchar_t *name)
{
    const SC_HANDLE manager = OpenSCManagerW(nullptr, nullptr, SC_MANAGER_CONNECT);
    const SC_HANDLE service = OpenServiceW(manager, name, SERVICE_QUERY_STATUS);
    SERVICE_STATUS status = {};
    std::string state = "not there or not readable";
    if (service != nullptr && QueryServiceStatus(service, &status)) {
        state = status.dwCurrentState == SERVICE_RUNNING ? "running" : "not running";
    }
    if (service != nullptr) {
        CloseServiceHandle(service);
    }
    if (manager != nullptr) {
        CloseServiceHandle(manager);
    }
    return state;
}

std::string defender()
{
    DWORD isOff = 0;
    const bool known = registryNumber(defenderKey, L"DisableRealtimeMonitoring", isOff);
    return "service " + serviceState(L"WinDefend") + ", real-time protection "
        + (known && isOff != 0 ? "off" : "not switched off in the registry");
}

std::string console()
{
    DWORD mode = 0;
    const bool hasConsole = GetConsoleMode(GetStdHandle(STD_OUTPUT_HANDLE), &mode);
    // This process' own code page is UTF-8, by its manifest; the registry has the system's.
    return "output code page " + std::to_string(GetConsoleOutputCP()) + ", system ANSI "
        + registryText(codePageKey, L"ACP") + ", OEM " + registryText(codePageKey, L"OEMCP")
        + (hasConsole ? ", mode " + hex(mode) : std::string(", output is no console"));
}

std::string language()
{
    wchar_t name[LOCALE_NAME_MAX_LENGTH] = L"";
    LCIDToLocaleName(GetUserDefaultUILanguage(), name, LOCALE_NAME_MAX_LENGTH, 0);
    return utf8(name);
}

} // namespace

std::string wineVersion()
{
    using GetVersionFunction = const char *(*)();
    const auto getVersion = systemFunction<GetVersionFunction>(L"ntdll.dll", "wine_get_version");
    return getVersion != nullptr ? getVersion() : "";
}

bool asksForConsent()
{
    DWORD isUacOn = 1;
    DWORD consent = 5; // Windows' default: a question
    registryNumber(policyKey, L"EnableLUA", isUacOn);
    registryNumber(policyKey, L"ConsentPromptBehaviorAdmin", consent);
    const bool mayElevateSilently = elevationType() == Elevation::Limited && consent == 0;
    return !isElevated() && isUacOn != 0 && !mayElevateSilently;
}

std::vector<std::pair<std::string, std::string>> systemFacts()
{
    DWORD longPaths = 0;
    registryNumber(L"SYSTEM\\CurrentControlSet\\Control\\FileSystem", L"LongPathsEnabled",
                   longPaths);
    SYSTEMTIME now = {};
    GetSystemTime(&now);
    char date[40];
    wsprintfA(date, "%04u-%02u-%02u %02u:%02u UTC", now.wYear, now.wMonth, now.wDay, now.wHour,
              now.wMinute);
    const std::string wine = wineVersion();
    return {{"date", date},
            {"windows", windowsVersion()},
            {"wine", wine.empty() ? "no" : wine},
            {"architecture", architecture()},
            {"memory", memory()},
            {"language", language()},
            {"rights", elevation()},
            {"temporary folder", temporaryDrive()},
            {"long paths", longPaths != 0 ? "enabled" : "not enabled"},
            {"Defender", defender()},
            {"console", console()}};
}

} // namespace kit
