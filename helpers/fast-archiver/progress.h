// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <atomic>
#include <cstdint>
#include <mutex>
#include <string>

namespace fast {

// What the threads that pack tell the thread that prints, and the other way round.
class Progress
{
public:
    // `stopped` becomes true if the run must end early. It lives longer than this object.
    explicit Progress(std::atomic<bool> &stopped) : m_stopped(stopped) {}

    void setTotal(std::uint64_t bytes) { m_total = bytes; }
    void addBytes(std::uint64_t bytes) { m_bytes += bytes; }
    void beginFile(const std::string &name);

    bool isStopped() const { return m_stopped; }
    void stop() { m_stopped = true; }
    const std::atomic<bool> &stopFlag() const { return m_stopped; }

    // From 0 to 100.
    unsigned percentage() const;
    // The line as 7-Zip's archiver shows it: the percentage, the number of files that were begun,
    // and the name of the last one.
    std::string line() const;

private:
    std::atomic<bool> &m_stopped;
    std::atomic<std::uint64_t> m_total = 0;
    std::atomic<std::uint64_t> m_bytes = 0;
    mutable std::mutex m_mutex;
    std::uint64_t m_files = 0;
    std::string m_name;
};

} // namespace fast
