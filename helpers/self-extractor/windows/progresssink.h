// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/unpacking/unpacksink.h"
#include "helpers/self-extractor/windows/progresswindow.h"

namespace sfx {

// Passes unpacked entries on to another sink, reports them to a window, and stops when the user
// cancels there.
class ProgressSink final : public UnpackSink
{
public:
    ProgressSink(UnpackSink &sink, ProgressWindow &window) : m_sink(sink), m_window(window) {}
    ProgressSink(Owned<UnpackSink> sink, ProgressWindow &window)
        : m_own(std::move(sink))
        , m_sink(*m_own)
        , m_window(window)
    {
    }

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
    Owned<UnpackSink> another() override
    {
        Owned<UnpackSink> sink = m_sink.another();
        return sink ? makeOwned<ProgressSink>(std::move(sink), m_window) : Owned<ProgressSink>();
    }

private:
    Owned<UnpackSink> m_own;
    UnpackSink &m_sink;
    ProgressWindow &m_window;
};

} // namespace sfx
