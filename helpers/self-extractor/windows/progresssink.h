// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/core/unpacker.h"
#include "helpers/self-extractor/windows/progresswindow.h"

namespace sfx {

/// Hands on what is unpacked, tells a window of it, and stops when that says so.
class ProgressSink final : public UnpackSink
{
public:
    ProgressSink(UnpackSink &sink, ProgressWindow &window) : m_sink(sink), m_window(window) {}

    Status begin(std::uint64_t totalBytes, std::uint32_t entries) override
    {
        return m_sink.begin(totalBytes, entries);
    }
    Status makeFolder(const Entry &folder) override { return m_sink.makeFolder(folder); }
    Status beginFile(const Entry &file) override
    {
        return m_window.isCancelled() ? Status::Cancelled : m_sink.beginFile(file);
    }
    Status write(const std::uint8_t *data, std::size_t size) override
    {
        m_window.add(size);
        return m_window.isCancelled() ? Status::Cancelled : m_sink.write(data, size);
    }
    Status endFile(const Entry &file) override { return m_sink.endFile(file); }
    Status finishFolder(const Entry &folder) override
    {
        return m_window.isCancelled() ? Status::Cancelled : m_sink.finishFolder(folder);
    }

private:
    UnpackSink &m_sink;
    ProgressWindow &m_window;
};

} // namespace sfx
