// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <utility>
#include <variant>

namespace pe {

enum class ErrorKind {
    NotPe,       // no MZ or PE signature, or neither PE32 nor PE32+
    Damaged,     // a PE whose tables contradict each other or the file's size
    BadIcon,     // the ICO data are not usable
    NoRoom,      // the PE file has no room for what is added
    CannotRead,  // opening or reading failed
    CannotWrite, // creating, writing or renaming failed
};

// A failure in two parts: what went wrong, and the system's message for it (empty if no call of the
// system failed).
struct Error
{
    ErrorKind kind = ErrorKind::Damaged;
    std::string what;
    std::string system = {};
};

// For operations that return no value.
struct Done
{};

// Either a value or an Error. Call hasError() before value().
template <typename T>
class [[nodiscard]] Result
{
public:
    Result(T value) : m_content(std::in_place_index<0>, std::move(value)) {}
    Result(Error error) : m_content(std::in_place_index<1>, std::move(error)) {}

    bool hasError() const { return m_content.index() == 1; }
    T &value() { return std::get<0>(m_content); }
    const T &value() const { return std::get<0>(m_content); }
    const Error &error() const { return std::get<1>(m_content); }

private:
    std::variant<T, Error> m_content;
};

} // namespace pe
