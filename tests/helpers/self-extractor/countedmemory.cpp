// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/helpers/self-extractor/countedmemory.h"

#include "helpers/self-extractor/base/memory.h"

#include <cstdlib>
#include <malloc.h>
#include <mutex>

namespace {

struct Counts
{
    std::mutex mutex;
    std::size_t limit = countedmemory::unlimited;
    std::size_t used = 0;
    std::size_t peak = 0;
    std::size_t largest = 0;
    std::size_t total = 0;
    unsigned failing = 0;
    unsigned requests = 0;
};

Counts &counts()
{
    static Counts instance;
    return instance;
}

} // namespace

namespace countedmemory {

void reset(std::size_t limit, unsigned failing)
{
    Counts &all = counts();
    const std::lock_guard lock(all.mutex);
    all.limit = limit;
    all.peak = all.used;
    all.largest = 0;
    all.total = 0;
    all.failing = failing;
    all.requests = 0;
}

std::size_t peak()
{
    const std::lock_guard lock(counts().mutex);
    return counts().peak;
}

std::size_t inUse()
{
    const std::lock_guard lock(counts().mutex);
    return counts().used;
}

std::size_t largestRequest()
{
    const std::lock_guard lock(counts().mutex);
    return counts().largest;
}

std::size_t total()
{
    const std::lock_guard lock(counts().mutex);
    return counts().total;
}

} // namespace countedmemory

namespace sfx {

void *allocateMemory(std::size_t size)
{
    Counts &all = counts();
    const std::lock_guard lock(all.mutex);
    all.largest = size > all.largest ? size : all.largest;
    all.total += size;
    if (++all.requests == all.failing || all.used > all.limit || size > all.limit - all.used) {
        return nullptr;
    }
    void *memory = std::malloc(size);
    if (memory != nullptr) {
        all.used += malloc_usable_size(memory);
        all.peak = all.used > all.peak ? all.used : all.peak;
    }
    return memory;
}

void releaseMemory(void *memory)
{
    if (memory != nullptr) {
        const std::lock_guard lock(counts().mutex);
        counts().used -= malloc_usable_size(memory);
    }
    std::free(memory);
}

} // namespace sfx
