// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/core/thread.h"
#include "helpers/self-extractor/core/unpacksink.h"
#include "helpers/self-extractor/windows/win32.h"

namespace sfx {

/// Writes what is unpacked below a folder. Every file must be new.
class FileSink final : public UnpackSink
{
public:
    /// `folder` is an existing folder, without a separator at its end.
    explicit FileSink(const Text &folder) : m_folder(folder), m_failure(m_ownFailure) {}

    /// What the system said to the step that failed first, here or in another sink of this one's; 0 if
    /// it was not the system. To be asked when all have come to an end.
    unsigned long systemError() const { return m_failure.error; }
    /// The file or folder that it is about.
    const Text &failedPath() const { return m_failure.path; }

    Status begin(std::uint64_t totalBytes, std::uint32_t entries) override;
    Status makeFolder(const Entry &folder) override;
    Status beginFile(const Entry &file) override;
    Status write(const std::uint8_t *data, std::size_t size) override;
    Status endFile(const Entry &file) override;
    Status finishFolder(const Entry &folder) override;
    Owned<UnpackSink> another() override;
    Status pauseFile() override;
    Status resumeFile(const Entry &file, std::uint64_t offset) override;

private:
    struct Failure {
        Monitor monitor;
        unsigned long error = 0;
        Text path;
    };

    friend Owned<FileSink> makeOwned<FileSink>(const Text &, Failure &);
    FileSink(const Text &folder, Failure &failure) : m_folder(folder), m_failure(failure) {}
    Status fail();
    [[nodiscard]] bool locate(const Entry &entry);
    bool createFile();
    bool openFile(std::uint64_t offset);
    bool createFolder();
    bool makeParents();

    const Text &m_folder;
    Text m_path;            // of the current entry, in extended form
    std::size_t m_base = 0; // where the entry's own path begins in it
    Handle m_file;
    Failure m_ownFailure;
    Failure &m_failure; // common to all sinks of one place
};

} // namespace sfx
