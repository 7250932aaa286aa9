// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/windows-kit/row.h"

#include <cstdint>
#include <cstdio>
#include <string>

namespace kit {

// The report, in UTF-8. docs/windows-tests.md describes its form. Every line is also shown, and
// written at once, so that a run that is broken off leaves what it has found.
class Report
{
public:
    Report() = default;
    Report(const Report &) = delete;
    Report &operator=(const Report &) = delete;
    ~Report();

    bool open(const std::wstring &path);
    void line(const std::string &text);
    void row(const std::string &name, const Result &result, std::uint64_t milliseconds);
    void summary();
    bool hasFailures() const { return m_failed != 0; }

private:
    FILE *m_file = nullptr;
    unsigned m_passed = 0;
    unsigned m_failed = 0;
    unsigned m_skipped = 0;
    unsigned m_notJudged = 0;
    std::string m_failures; // the names of the rows that failed, in lines
};

} // namespace kit
