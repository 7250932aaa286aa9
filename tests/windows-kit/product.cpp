// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/windows-kit/product.h"

#include "tests/windows-kit/files.h"
#include "tests/windows-kit/process.h"
#include "tests/windows-kit/sevenzip.h"
#include "tests/windows-kit/text.h"

#include <cstddef>
#include <cstdlib>
#include <cstring>

#include <windows.h>

namespace kit {

namespace {

std::string blockFor(const std::wstring &program)
{
    const std::string name = utf8(program);
    const std::string base = name.substr(0, name.find('.'));
    return ";!@Install@!UTF-8!\nTitle=\"" + base + "\"\nProgress=\"yes\"\nRunProgram=\"" + name
        + "\"\nInstallPath=\"%%T\\" + base + "\"\n;!@InstallEnd@!\n";
}

bool setKind(const std::wstring &path, Kind kind)
{
    std::string program = readFile(path);
    std::uint32_t headers = 0;
    std::memcpy(&headers, program.data() + offsetof(IMAGE_DOS_HEADER, e_lfanew), sizeof headers);
    program.at(headers + offsetof(IMAGE_NT_HEADERS64, OptionalHeader.Subsystem))
        = static_cast<char>(kind);
    return writeFile(path, program);
}

} // namespace

bool writeProduct(const Place &place, const std::wstring &path, const std::wstring &program,
                  const std::string &archive)
{
    const std::string module = readFile(place.file(L"7zS2.sfx"));
    return !module.empty() && writeFile(path, module + blockFor(program) + archive);
}

bool writeProduct(const Place &place, const std::wstring &path, const std::wstring &program,
                  const std::vector<Entry> &entries)
{
    return writeProduct(place, path, program, storedArchive(entries));
}

std::vector<Entry> probeEntries(const Place &place)
{
    return {{L"kit-probe.exe", readFile(place.file(L"kit-probe.exe"))},
            {L"data.txt", dataLine + "\r\n"},
            {L"folder/inner.txt", "a file in a folder\r\n"}};
}

std::wstring placeProduct(const Place &place, Kind kind)
{
    const std::wstring path = place.path(L"product.exe");
    const std::wstring prepared = place.product(L"kit-probe.exe");
    const bool isMade = exists(prepared)
        ? copyFile(prepared, path)
        : writeProduct(place, path, L"kit-probe.exe", probeEntries(place));
    return isMade && setKind(path, kind) ? path : std::wstring();
}

Result runsAndLeavesNothing(const Place &place, const std::wstring &product)
{
    const ProbeControl probe(place);
    const Ended ended = run(Start(product, L"--print=here --exit=5"), place.folder);
    Check check;
    check.that(ended.isByItself && ended.exitCode == 5, ended.text());
    check.that(startsWith(ended.output, "here"), "its output is missing: " + ended.text());
    check.that(probe.notes()["data"] == dataLine, "its data are missing");
    check.that(leftovers(place).empty(), "it left its folder");
    return check.result();
}

bool moveTemp(Place &place, const std::wstring &folder)
{
    place.temp = folder;
    return makeFolder(folder) && SetEnvironmentVariableW(L"TMP", folder.c_str())
        && SetEnvironmentVariableW(L"TEMP", folder.c_str());
}

Notes::Notes(const std::wstring &path)
{
    const std::string text = readFile(path);
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = text.find('\n', at);
        const std::string line = text.substr(at, end - at);
        const std::size_t sign = line.find('=');
        if (sign != std::string::npos) {
            m_values[line.substr(0, sign)] = line.substr(sign + 1);
        }
        at = end == std::string::npos ? text.size() : end + 1;
    }
}

std::string Notes::operator[](const std::string &key) const
{
    const auto found = m_values.find(key);
    return found == m_values.end() ? std::string() : found->second;
}

unsigned long Notes::id() const
{
    return std::strtoul((*this)["id"].c_str(), nullptr, 10);
}

ProbeControl::ProbeControl(const Place &place, const std::wstring &name) : m_path(place.path(name))
{
    static int number = 0;
    const std::wstring event = L"Local\\kestrelpack-kit-" + std::to_wstring(GetCurrentProcessId())
        + L'-' + std::to_wstring(++number);
    m_event = CreateEventW(nullptr, TRUE, FALSE, event.c_str());
    SetEnvironmentVariableW(L"KIT_EVENT", event.c_str());
    SetEnvironmentVariableW(L"KIT_NOTE", m_path.c_str());
}

ProbeControl::~ProbeControl()
{
    release();
    CloseHandle(m_event);
}

void ProbeControl::release()
{
    SetEvent(m_event);
}

Notes ProbeControl::waitForNotes(const Process &process) const
{
    waitUntil([&] { return exists(m_path) || !process.isRunning(); });
    return notes();
}

Notes ProbeControl::waitForChild() const
{
    const std::wstring path = m_path + L".child";
    waitUntil([&] { return exists(path); });
    return Notes(path);
}

std::vector<std::wstring> leftovers(const Place &place)
{
    return namesIn(place.temp, L"kp-*");
}

bool areModulesGone(const Place &place)
{
    for (const std::wstring &name : namesIn(place.temp, L"kp-*.lock")) {
        const HANDLE file = CreateFileW((place.temp + L'\\' + name).c_str(), GENERIC_READ, 0,
                                        nullptr, OPEN_EXISTING, 0, nullptr);
        if (file == INVALID_HANDLE_VALUE) {
            return false;
        }
        CloseHandle(file);
    }
    return true;
}

std::wstring privateFolder(const Notes &notes)
{
    return parentOf(wide(notes["dir"]));
}

} // namespace kit
