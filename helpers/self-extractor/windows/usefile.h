// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/text.h"
#include "helpers/self-extractor/start/keptrecord.h"
#include "helpers/self-extractor/start/pathindex.h"
#include "helpers/self-extractor/windows/win32.h"

namespace sfx {

// The file beside a kept folder that contains its record. Its time is that of the folder's last use.
// All starts whose programs run share it, and programs inherit the handle. Who claims it knows that
// none does.
class UseFile
{
public:
    // Opens the file, which must exist, together with others. Returns false on failure.
    [[nodiscard]] bool share(const Text &path);
    // Opens the file alone. With `disposition` OPEN_ALWAYS it is created if it does not exist. Returns
    // false on failure, with the reason in GetLastError().
    [[nodiscard]] bool claim(const Text &path, SECURITY_ATTRIBUTES *security, DWORD disposition);
    // Closes the file.
    void release() { m_file.reset(); }
    // Removes a claimed file.
    void discard();

    // Returns false if the file contains no record.
    [[nodiscard]] bool read(KeptRecord &record) const;
    // Reads the paths that this record describes. Returns false if the file does not contain them.
    [[nodiscard]] bool readPaths(const KeptRecord &record, PathIndex &paths) const;
    // Seals the record, and writes it and the paths into a claimed file. Returns false on failure.
    [[nodiscard]] bool write(KeptRecord &record, const Array<std::uint64_t> &hashes) const;

    // Waits until the file is on the disk. Returns false on failure.
    [[nodiscard]] bool flush() const { return FlushFileBuffers(m_file.get()); }

    // In 100 ns since 1601; 0 if it is not known.
    std::uint64_t lastUse() const;
    // Makes this moment the last use.
    void setLastUse() const;

private:
    Handle m_file;
};

// The time in 100 ns since 1601.
std::uint64_t timeNow();

} // namespace sfx
