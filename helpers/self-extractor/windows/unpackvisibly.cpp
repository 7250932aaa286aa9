// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/unpackvisibly.h"

#include "helpers/self-extractor/unpacking/unpacker.h"
#include "helpers/self-extractor/windows/progresssink.h"

namespace sfx {

namespace {

// As many threads as processors, and at most half of the free memory.
void setLimitsOfMachine(UnpackLimits &limits)
{
    DWORD_PTR own = 0;
    DWORD_PTR all = 0;
    if (GetProcessAffinityMask(GetCurrentProcess(), &own, &all)) {
        limits.threads = static_cast<unsigned>(__builtin_popcountll(own));
    }
    MEMORYSTATUSEX memory = {};
    memory.dwLength = sizeof memory;
    if (GlobalMemoryStatusEx(&memory) && memory.ullAvailPhys / 2 < limits.memory) {
        limits.memory = memory.ullAvailPhys / 2;
    }
}

} // namespace

Status unpackVisibly(Archive &archive, UnpackSink &sink, std::uint64_t totalBytes,
                     const Owned<ProgressWindow> &window, const bool *skipped)
{
    UnpackLimits limits;
    limits.skipped = skipped;
    setLimitsOfMachine(limits);
    if (!window) {
        return unpack(archive, sink, totalBytes, limits);
    }
    ProgressSink watched(sink, *window);
    const Status status = unpack(archive, watched, totalBytes, limits);
    return status == Status::Ok && window->isCancelled() ? Status::Cancelled : status;
}

} // namespace sfx
