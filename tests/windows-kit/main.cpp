// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/windows-kit/byhand.h"
#include "tests/windows-kit/files.h"
#include "tests/windows-kit/inconsole.h"
#include "tests/windows-kit/report.h"
#include "tests/windows-kit/suites.h"
#include "tests/windows-kit/system.h"
#include "tests/windows-kit/text.h"

#include <cstdio>

#include <windows.h>

// Runs the rows and the test programs, and writes the report. run-tests.cmd starts it.
namespace kit {

namespace {

constexpr const char *usage
    = "Usage: windows-kit [--quick] [--no-suites] [--only TEXT] [--drive FOLDER] "
      "[--report FILE]\n"
      "  --quick      only the short rows, and no test programs\n"
      "  --no-suites  no test programs\n"
      "  --only TEXT  only rows and test programs whose name has TEXT in it\n"
      "  --drive DIR  a folder on a USB stick or a network share\n"
      "  --report F   the report; otherwise kestrelpack-windows-report.txt here\n";

struct Options
{
    bool isRight = true;
    bool isQuick = false;
    bool hasSuites = true;
    std::string only;
    std::wstring drive;
    std::wstring report;
};

Options optionsOf(int count, wchar_t **arguments)
{
    Options options;
    for (int i = 1; i < count; ++i) {
        const std::wstring option = arguments[i];
        const bool hasValue = i + 1 < count;
        if (option == L"--quick") {
            options.isQuick = true;
        } else if (option == L"--no-suites") {
            options.hasSuites = false;
        } else if (option == L"--only" && hasValue) {
            options.only = utf8(arguments[++i]);
        } else if (option == L"--drive" && hasValue) {
            options.drive = arguments[++i];
        } else if (option == L"--report" && hasValue) {
            options.report = arguments[++i];
        } else {
            options.isRight = false;
        }
    }
    return options;
}

// The rows' folders are here. The path has no short names (8.3), because rows compare paths.
std::wstring workFolder()
{
    std::wstring path(32768, L'\0');
    path.resize(
        GetLongPathNameW(variable(L"TEMP").c_str(), path.data(), static_cast<DWORD>(path.size())));
    return path + L"\\kestrelpack-kit-" + std::to_wstring(GetCurrentProcessId());
}

class Run
{
public:
    Run(const Options &options, Report &report)
        : m_options(options)
        , m_report(report)
        , m_work(workFolder())
        , m_temp(variable(L"TEMP"))
    {
        m_place.kit = parentOf(ownProgram());
        m_place.drive = options.drive;
    }

    void rows();
    void suites();
    void end();

private:
    bool isWanted(const std::string &name) const
    {
        return m_options.only.empty() || contains(name, m_options.only);
    }
    // Renews the row's folders.
    void begin();

    const Options &m_options;
    Report &m_report;
    std::wstring m_work;
    std::wstring m_temp;
    Place m_place;
    unsigned m_number = 0;
};

void Run::begin()
{
    m_place.folder = m_work + L'\\' + std::to_wstring(++m_number);
    m_place.temp = m_place.folder + L"\\temp";
    makeFolder(m_place.temp);
    for (const wchar_t *name : {L"TEMP", L"TMP"}) {
        SetEnvironmentVariableW(name, m_place.temp.c_str());
    }
}

void Run::rows()
{
    const bool isWine = !wineVersion().empty();
    for (const Row &row : allRows()) {
        if (!isWanted(row.name) || (m_options.isQuick && !row.isQuick)) {
            continue;
        }
        begin();
        const ULONGLONG begun = GetTickCount64();
        Result result = row.run(m_place);
        // Such a row runs nevertheless, so that it cannot rot.
        if (isWine && row.notUnderWine != nullptr && result.outcome != Outcome::NotJudged) {
            const std::string seen = result.outcome == Outcome::Pass ? "here it passes"
                                                                     : "here it fails";
            result = {Outcome::NotJudged,
                      std::string("Wine: ") + row.notUnderWine + "; " + seen
                          + (result.reason.empty() ? "" : ": " + result.reason)};
        }
        m_report.row(row.name, result, GetTickCount64() - begun);
        removeFolder(m_place.folder);
    }
}

void Run::suites()
{
    for (const std::wstring &suite : suiteNames(m_place.kit)) {
        if (!isWanted(utf8(suite))) {
            continue;
        }
        begin();
        for (const NamedResult &result : runSuite(m_place, suite)) {
            m_report.row(result.name, result.result, result.milliseconds);
        }
        removeFolder(m_place.folder);
    }
}

void Run::end()
{
    for (const wchar_t *name : {L"TEMP", L"TMP"}) {
        SetEnvironmentVariableW(name, m_temp.c_str());
    }
    removeFolder(m_work);
}

std::wstring reportPath(const Options &options)
{
    return options.report.empty() ? parentOf(ownProgram()) + L"\\kestrelpack-windows-report.txt"
                                  : options.report;
}

int runAll(const Options &options)
{
    Report report;
    const bool isWritten = report.open(reportPath(options));
    report.line("Kestrelpack " KESTRELPACK_VERSION " on Windows");
    for (const auto &[name, value] : systemFacts()) {
        report.line(name + ": " + value);
    }
    report.line("");
    Run run(options, report);
    run.rows();
    if (options.hasSuites && !options.isQuick) {
        run.suites();
    }
    run.end();
    report.line("");
    report.summary();
    if (!options.isQuick) {
        report.line("");
        for (const char *line : byHand) {
            report.line(line);
        }
    }
    if (!isWritten) {
        report.line("The report cannot be written to " + utf8(reportPath(options)));
    }
    return report.hasFailures() || !isWritten ? 1 : 0;
}

} // namespace

} // namespace kit

int wmain(int count, wchar_t **arguments)
{
    // Programs that cannot start end with a code; without this Windows would show a box.
    SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX | SEM_NOOPENFILEERRORBOX);
    int exitCode = 0;
    if (kit::serveConsole(count, arguments, exitCode)) {
        return exitCode;
    }
    const kit::Options options = kit::optionsOf(count, arguments);
    if (!options.isRight) {
        std::fputs(kit::usage, stderr);
        return 2;
    }
    return kit::runAll(options);
}
