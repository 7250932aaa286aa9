// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <utility>
#include <variant>

namespace pe {

enum class ErrorKind {
    NotPe,       // no MZ/PE signatures, or an optional header that is neither PE32 nor PE32+
    Damaged,     // a PE whose tables contradict each other or the file's size
    BadIcon,     // the ICO data are not usable
    NoRoom,      // the PE leaves no room for what was asked
    CannotRead,  // the system refused to open or read
    CannotWrite, // the system refused to create, write or rename
};

// A failure in two halves: what was being done, and what the system said (empty when the
// system had no part in it).
struct Error
{
    ErrorKind kind = ErrorKind::Damaged;
    std::string what;
    std::string system = {};
};

// The value of an operation without a result.
struct Done
{};

// Either a value or an Error. Ask hasError() before value().
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
