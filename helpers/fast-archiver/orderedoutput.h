// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/fast-archiver/archivefile.h"

#include <condition_variable>
#include <map>
#include <mutex>

namespace fast {

// Takes the packed bytes of several blocks at the same time, and writes them to the archive in the
// order of the blocks. Keeps the bytes of later blocks in memory, up to a limit; their threads wait
// if it is reached. The thread of the first unfinished block never waits, so the blocks must be
// begun in their order.
class OrderedOutput
{
public:
    OrderedOutput(ArchiveFile &archive, std::size_t memoryLimit);

    // Adds bytes to a block.
    Outcome<Done> write(std::size_t block, pe::ByteView bytes);
    // The block has all its bytes.
    Outcome<Done> finish(std::size_t block);

    // Closes and removes the archive. All calls fail from now on.
    void abandon();

private:
    struct Waiting
    {
        pe::Bytes bytes;
        bool isFinished = false;
    };

    Outcome<Done> writeWaiting(std::size_t block);

    ArchiveFile &m_archive;
    const std::size_t m_memoryLimit;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::map<std::size_t, Waiting> m_waiting;
    std::size_t m_waitingBytes = 0;
    std::size_t m_turn = 0; // the first unfinished block
    bool m_isAbandoned = false;
};

} // namespace fast
