// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/bytesource.h"

#include <QByteArray>

#include <cstring>

// Bytes in memory as the module sees its own file.
class MemorySource final : public sfx::ByteSource
{
public:
    explicit MemorySource(QByteArray bytes) : m_bytes(std::move(bytes)) {}
    bool readAt(std::uint64_t offset, void *data, std::size_t size) override
    {
        if (offset > this->size() || size > this->size() - offset) {
            return false;
        }
        if (size != 0) {
            std::memcpy(data, m_bytes.constData() + offset, size);
        }
        return true;
    }
    std::uint64_t size() const override { return static_cast<std::uint64_t>(m_bytes.size()); }

private:
    QByteArray m_bytes;
};
