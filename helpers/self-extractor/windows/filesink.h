// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/thread.h"
#include "helpers/self-extractor/unpacking/unpacksink.h"
#include "helpers/self-extractor/windows/filecloser.h"
#include "helpers/self-extractor/windows/win32.h"

#include <atomic>

namespace sfx {

// Failures are ignored: the program runs without them.
void setTimeAndAttributes(HANDLE file, const Entry &entry);

// Writes unpacked entries into a folder. Every file must be new, but a file with a name like a short
// one may have been created empty by an earlier beginFile().
class FileSink final : public UnpackSink
{
public:
    // `folder` is an existing folder, without a separator at its end. The closer may be missing.
    FileSink(const Text &folder, const Owned<FileCloser> &closer)
        : m_folder(folder)
        , m_closer(closer)
        , m_common(m_own)
    {
    }

    // The system's error in the step that failed first, in this sink or another one for the same
    // folder; 0 if no system call failed. Ask this and the next two of the first sink, after all
    // sinks have finished.
    unsigned long systemError() const { return m_common.error; }
    // Disk space that was missing for everything that was still to be written; 0: not known.
    std::uint64_t missingBytes() const { return m_common.missing; }
    // The file or folder that failed, as users know it; may be empty.
    const Text &failedPath() const { return m_common.failedPath; }

    Status begin(std::uint64_t totalBytes, std::uint32_t entries) override;
    Status makeFolder(const Entry &folder) override;
    Status beginFile(const Entry &file) override;
    Status write(const std::uint8_t *data, std::size_t size) override;
    Status endFile(const Entry &file) override;
    Status finishFolder(const Entry &folder) override;
    Owned<UnpackSink> another() override;

private:
    // What all sinks for one folder share.
    struct Common
    {
        std::atomic<std::uint64_t> left = 0; // bytes that are still to be written
        Monitor monitor;                     // protects the members below
        std::uint64_t missing = 0;
        unsigned long error = 0;
        Text failedPath;
    };

    friend Owned<FileSink> makeOwned<FileSink>(const Text &, const Owned<FileCloser> &, Common &);
    FileSink(const Text &folder, const Owned<FileCloser> &closer, Common &common)
        : m_folder(folder)
        , m_closer(closer)
        , m_common(common)
    {
    }
    Status fail();
    [[nodiscard]] bool locate(const Entry &entry);
    bool createFile(const Entry &file);
    bool createFolder();
    bool makeParents();

    const Text &m_folder;
    const Owned<FileCloser> &m_closer;
    Text m_path;            // of the current entry, in extended form
    std::size_t m_base = 0; // where the entry's path begins in it
    Handle m_file;
    Common m_own;
    Common &m_common; // the first sink's
};

} // namespace sfx
