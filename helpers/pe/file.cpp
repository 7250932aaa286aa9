// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/pe/file.h"

#include <utility>

namespace pe {

File::File(File &&other) noexcept
    : m_handle(std::exchange(other.m_handle, noHandle))
    , m_size(std::exchange(other.m_size, 0))
{
}

File &File::operator=(File &&other) noexcept
{
    if (this != &other) {
        close();
        m_handle = std::exchange(other.m_handle, noHandle);
        m_size = std::exchange(other.m_size, 0);
    }
    return *this;
}

File::~File()
{
    close();
}

Result<Bytes> File::readAt(std::uint64_t offset, std::size_t length) const
{
    if (!fits(offset, length, m_size)) {
        return Error{ErrorKind::Damaged, "the file ends inside a structure"};
    }
    Bytes bytes(length);
    if (const auto read = readAt(offset, std::span(bytes)); read.hasError()) {
        return read.error();
    }
    return bytes;
}

} // namespace pe
