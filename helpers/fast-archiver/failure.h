// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/pe/nativepath.h"
#include "helpers/pe/result.h"

#include <string>
#include <utility>
#include <variant>

namespace fast {

// The exit statuses, with the numbers of 7-Zip's archiver.
enum class ExitStatus {
    Done = 0,
    Unreadable = 1, // a file or folder cannot be read, or was changed meanwhile
    Failed = 2,     // the archive cannot be written
    WrongUsage = 7,
    NoMemory = 8,
    Interrupted = 255,
};

// Why no archive was made.
struct Failure
{
    ExitStatus status = ExitStatus::Failed;
    std::string message; // one line; empty for an interruption
};

// Either a value or a Failure. Call hasFailed() before value().
template <typename T>
class [[nodiscard]] Outcome
{
public:
    Outcome(T value) : m_content(std::in_place_index<0>, std::move(value)) {}
    Outcome(Failure failure) : m_content(std::in_place_index<1>, std::move(failure)) {}

    bool hasFailed() const { return m_content.index() == 1; }
    T &value() { return std::get<0>(m_content); }
    const T &value() const { return std::get<0>(m_content); }
    const Failure &failure() const { return std::get<1>(m_content); }

private:
    std::variant<T, Failure> m_content;
};

// For operations that return no value.
using pe::Done;

// Makes the failure to read or write the file at `path`. Control characters in the path become "?",
// so that the message stays one line.
Failure failureOf(const pe::NativePath &path, const pe::Error &error);

} // namespace fast
