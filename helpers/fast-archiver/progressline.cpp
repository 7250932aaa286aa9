// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/fast-archiver/progressline.h"

namespace fast {

namespace {

constexpr std::chrono::seconds longestSilence{3};

} // namespace

std::string removalOf(const std::string &line)
{
    if (line.empty()) {
        return {};
    }
#ifdef _WIN32
    const std::string back = "\r";
#else
    const std::string back(line.size(), '\b');
#endif
    return back + std::string(line.size(), ' ') + back;
}

void ProgressLine::show(const std::string &line, Clock::time_point now)
{
    if (line == m_shown && now - m_printed < longestSilence) {
        return;
    }
    const std::string text = removalOf(m_shown) + line;
    std::fputs(text.c_str(), m_stream);
    std::fflush(m_stream);
    m_shown = line;
    m_printed = now;
}

void ProgressLine::hide()
{
    std::fputs(removalOf(m_shown).c_str(), m_stream);
    std::fflush(m_stream);
    m_shown.clear();
}

} // namespace fast
