// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/windows-kit/row.h"

namespace kit {

Result pass(const std::string &figures)
{
    return {Outcome::Pass, figures};
}

Result fail(const std::string &reason)
{
    return {Outcome::Fail, reason};
}

Result notJudged(const std::string &reason)
{
    return {Outcome::NotJudged, reason};
}

bool Check::that(bool holds, const std::string &otherwise)
{
    if (!holds && m_failure.empty()) {
        m_failure = otherwise;
    }
    return holds;
}

void Check::note(const std::string &figures)
{
    m_figures += (m_figures.empty() ? "" : "; ") + figures;
}

Result Check::result() const
{
    if (m_failure.empty()) {
        return pass(m_figures);
    }
    return fail(m_figures.empty() ? m_failure : m_failure + " [" + m_figures + "]");
}

} // namespace kit
