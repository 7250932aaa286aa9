// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/bytesource.h"
#include "helpers/self-extractor/base/text.h"
#include "helpers/self-extractor/windows/win32.h"

namespace sfx {

// The file of the running executable.
class Executable final : public ByteSource
{
public:
    // Returns false if it cannot be opened, with the reason in GetLastError().
    [[nodiscard]] bool open();
    // The file's full path; empty before open().
    const Text &path() const { return m_path; }

    bool readAt(std::uint64_t offset, void *data, std::size_t size) override;
    std::uint64_t size() const override { return m_size; }

private:
    Text m_path;
    Handle m_file;
    std::uint64_t m_size = 0;
};

} // namespace sfx
