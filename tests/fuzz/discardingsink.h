// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/unpacking/unpacksink.h"

#include <atomic>

// Discards the unpacked files, in any number of threads.
class DiscardingSink final : public sfx::UnpackSink
{
public:
    // The disk is full after `outputLimit` bytes, counted over all sinks. `written` must outlive
    // the sink.
    DiscardingSink(std::atomic<std::uint64_t> &written, std::uint64_t outputLimit)
        : m_written(written)
        , m_outputLimit(outputLimit)
    {
    }

    sfx::Status begin(std::uint64_t, std::uint32_t) override { return sfx::Status::Ok; }
    sfx::Status makeFolder(const sfx::Entry &) override { return sfx::Status::Ok; }
    sfx::Status beginFile(const sfx::Entry &) override { return sfx::Status::Ok; }
    sfx::Status write(const std::uint8_t *, std::size_t size) override
    {
        const std::uint64_t sum = m_written += size;
        return sum > m_outputLimit ? sfx::Status::DiskFull : sfx::Status::Ok;
    }
    sfx::Status endFile(const sfx::Entry &) override { return sfx::Status::Ok; }
    sfx::Status finishFolder(const sfx::Entry &) override { return sfx::Status::Ok; }
    sfx::Owned<sfx::UnpackSink> another() override
    {
        return sfx::makeOwned<DiscardingSink>(m_written, m_outputLimit);
    }

private:
    std::atomic<std::uint64_t> &m_written;
    const std::uint64_t m_outputLimit;
};
