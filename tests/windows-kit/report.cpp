// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/windows-kit/report.h"

#include "tests/windows-kit/text.h"

#include <windows.h>

namespace kit {

namespace {

const char *wordFor(Outcome outcome)
{
    switch (outcome) {
    case Outcome::Pass:
        return "PASS";
    case Outcome::Fail:
        return "FAIL";
    case Outcome::Skip:
        return "SKIP";
    case Outcome::NotJudged:
        break;
    }
    return "NOT-JUDGED";
}

// A console gets UTF-16, which does not depend on its code page.
void show(const std::string &line)
{
    const HANDLE out = GetStdHandle(STD_OUTPUT_HANDLE);
    const std::wstring text = wide(line);
    DWORD mode = 0;
    DWORD written = 0;
    if (GetConsoleMode(out, &mode)) {
        WriteConsoleW(out, text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
    } else {
        WriteFile(out, line.data(), static_cast<DWORD>(line.size()), &written, nullptr);
    }
}

} // namespace

Report::~Report()
{
    if (m_file != nullptr) {
        std::fclose(m_file);
    }
}

bool Report::open(const std::wstring &path)
{
    m_file = _wfopen(path.c_str(), L"wb");
    return m_file != nullptr && std::fputs("\xef\xbb\xbf", m_file) >= 0; // says that it is UTF-8
}

void Report::line(const std::string &text)
{
    const std::string whole = text + "\r\n";
    show(whole);
    if (m_file != nullptr) {
        std::fputs(whole.c_str(), m_file);
        std::fflush(m_file);
    }
}

void Report::row(const std::string &name, const Result &result, std::uint64_t milliseconds)
{
    char columns[40];
    std::snprintf(columns, sizeof columns, "%-10s | %7llu ms | ", wordFor(result.outcome),
                  static_cast<unsigned long long>(milliseconds));
    const std::string reason = oneLine(result.reason);
    line(columns + name + (reason.empty() ? "" : " | " + reason));
    switch (result.outcome) {
    case Outcome::Pass:
        ++m_passed;
        break;
    case Outcome::Fail:
        ++m_failed;
        m_failures += "  " + name + "\r\n";
        break;
    case Outcome::Skip:
        ++m_skipped;
        break;
    case Outcome::NotJudged:
        ++m_notJudged;
        break;
    }
}

void Report::summary()
{
    line("SUMMARY: " + std::to_string(m_passed) + " PASS, " + std::to_string(m_failed) + " FAIL, "
         + std::to_string(m_skipped) + " SKIP, " + std::to_string(m_notJudged) + " NOT-JUDGED");
    if (m_failed != 0) {
        line("Failed:\r\n" + m_failures);
    }
}

} // namespace kit
