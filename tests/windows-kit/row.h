// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <string>
#include <vector>

// One row of the report. To add a row: write a function, declare it in rows.h, and add a line to the
// table in rows.cpp.
namespace kit {

enum class Outcome { Pass, Fail, Skip, NotJudged };

struct Result
{
    Outcome outcome = Outcome::Pass;
    std::string reason; // for a row that passes: figures, if there are any
};

Result pass(const std::string &figures = {});
Result fail(const std::string &reason);
Result notJudged(const std::string &reason);

// Where a row works.
struct Place
{
    std::wstring kit;    // the kit's folder
    std::wstring folder; // the row's own folder, empty at its start
    std::wstring temp;   // the temporary folder of all that the row starts, empty at its start
    std::wstring drive;  // a folder on another drive, if the caller has named one

    std::wstring file(const wchar_t *name) const { return kit + L"\\files\\" + name; }
    std::wstring product(const wchar_t *name) const { return kit + L"\\products\\" + name; }
    std::wstring path(const std::wstring &name) const { return folder + L'\\' + name; }
};

// Collects what a row expects. The first expectation that does not hold is the row's result.
class Check
{
public:
    bool that(bool holds, const std::string &otherwise);
    void note(const std::string &figures);
    Result result() const;

private:
    std::string m_failure;
    std::string m_figures;
};

struct Row
{
    const char *name;
    Result (*run)(const Place &place);
    bool isQuick;             // also in the short run (option --quick)
    const char *notUnderWine; // why Wine cannot judge it; nullptr if it can
};

// The whole table, in the order of the report.
const std::vector<Row> &allRows();

} // namespace kit
