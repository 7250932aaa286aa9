// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/windows-kit/suites.h"

#include "tests/windows-kit/files.h"
#include "tests/windows-kit/process.h"
#include "tests/windows-kit/text.h"

namespace kit {

namespace {

constexpr DWORD longestSuite = 900000; // as for ctest

std::vector<std::string> linesOf(const std::string &text)
{
    std::vector<std::string> lines(1);
    for (const char c : text) {
        if (c == '\n') {
            lines.emplace_back();
        } else if (c != '\r') {
            lines.back() += c;
        }
    }
    return lines;
}

// Qt Test's report begins the line of every result with a word of seven columns and ": ".
bool isResult(const std::string &line, const char *word)
{
    return startsWith(line, word) && line.compare(7, 2, ": ") == 0;
}

bool beginsResult(const std::string &line)
{
    return line.size() > 9 && line[0] >= 'A' && line[0] <= 'Z' && line.compare(7, 2, ": ") == 0;
}

// "FAIL!  : TestCli::packs(a row) reason" and the lines that belong to it.
NamedResult resultOf(const std::string &suite, Outcome outcome, const std::string &line,
                     const std::string &further)
{
    NamedResult result;
    const std::size_t begin = line.find("::");
    const std::size_t end = line.find(')', line.find('('));
    if (begin == std::string::npos || end == std::string::npos) {
        result.name = suite;
        result.result = {outcome, line + further};
        return result;
    }
    result.name = suite + ": " + line.substr(begin + 2, end + 1 - begin - 2);
    for (char &c : result.name) {
        c = c == '|' ? '/' : c; // it separates the report's columns
    }
    result.result = {outcome, line.substr(end + 1) + further};
    return result;
}

std::vector<NamedResult> rowsOf(const std::string &suite, const std::vector<std::string> &lines)
{
    std::vector<NamedResult> rows;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const bool failed = isResult(lines[i], "FAIL!") || isResult(lines[i], "XPASS")
            || isResult(lines[i], "QFATAL");
        if (!failed && !isResult(lines[i], "SKIP")) {
            continue;
        }
        std::string further;
        for (std::size_t j = i + 1;
             j < lines.size() && !beginsResult(lines[j]) && !startsWith(lines[j], "Totals: ");
             ++j) {
            further += ' ' + lines[j];
        }
        // Of a skipped row only the reason is of interest.
        rows.push_back(failed ? resultOf(suite, Outcome::Fail, lines[i], further)
                              : resultOf(suite, Outcome::Skip, lines[i], ""));
    }
    return rows;
}

std::string totalsIn(const std::vector<std::string> &lines)
{
    for (const std::string &line : lines) {
        if (startsWith(line, "Totals: ")) {
            return line.substr(8);
        }
    }
    return {};
}

} // namespace

std::vector<std::wstring> suiteNames(const std::wstring &kit)
{
    std::vector<std::wstring> names;
    for (const std::wstring &name : namesIn(kit + L"\\tests", L"tst_*.exe")) {
        names.push_back(name.substr(0, name.size() - 4));
    }
    return names;
}

std::vector<NamedResult> runSuite(const Place &place, const std::wstring &suite)
{
    SetEnvironmentVariableW(L"KESTRELPACK_TEST_FILES", (place.kit + L"\\files").c_str());
    SetEnvironmentVariableW(L"QTEST_FUNCTION_TIMEOUT",
                            std::to_wstring(longestSuite - 30000).c_str());
    const std::wstring report = place.path(L"report.txt");
    Start start(place.kit + L"\\tests\\" + suite + L".exe", L"-o \"" + report + L",txt\"");
    start.folder = place.folder;
    start.limit = longestSuite;
    const Ended ended = run(start, place.folder);
    const std::vector<std::string> lines = linesOf(readFile(report));
    const std::string totals = totalsIn(lines);
    NamedResult whole;
    whole.name = utf8(suite);
    whole.milliseconds = ended.milliseconds;
    // Exit code 0 alone would not show that anything has run.
    const bool passed = ended.isByItself && ended.exitCode == 0 && !totals.empty()
        && !startsWith(totals, "0 passed");
    whole.result = passed ? pass(totals) : fail(totals + " " + ended.text());
    std::vector<NamedResult> results{whole};
    for (const NamedResult &row : rowsOf(whole.name, lines)) {
        results.push_back(row);
    }
    return results;
}

} // namespace kit
