// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/bytesource.h"

#include <cstring>

// Presents a fuzzer's input like the module's own file.
class InputSource final : public sfx::ByteSource
{
public:
    InputSource(const std::uint8_t *data, std::size_t size) : m_data(data), m_size(size) {}

    bool readAt(std::uint64_t offset, void *data, std::size_t size) override
    {
        if (offset > m_size || size > m_size - offset) {
            return false;
        }
        if (size != 0) {
            std::memcpy(data, m_data + offset, size);
        }
        return true;
    }
    std::uint64_t size() const override { return m_size; }

private:
    const std::uint8_t *m_data;
    std::size_t m_size;
};
