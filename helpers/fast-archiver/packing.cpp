// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/fast-archiver/packing.h"

#include "helpers/fast-archiver/blockpacker.h"
#include "helpers/fast-archiver/machine.h"

#include <algorithm>
#include <new>
#include <optional>
#include <system_error>
#include <thread>

namespace fast {

namespace {

class Packing
{
public:
    Packing(const Source &source, const std::vector<SolidBlock> &blocks, const PackOptions &options,
            OrderedOutput &output, Progress &progress)
        : m_source(source)
        , m_blocks(blocks)
        , m_output(output)
        , m_progress(progress)
        , m_packed(blocks.size())
    {
        std::uint64_t memory = 0;
        std::size_t work = 0;
        for (const SolidBlock &block : blocks) {
            const FramePlan plan = framePlanFor(block, options);
            m_plans.push_back(plan);
            memory = std::max(memory, memoryFor(plan));
            work += plan.partSize != 0 ? static_cast<std::size_t>(block.size / plan.partSize + 1)
                                       : 1;
        }
        m_threads = threadsFor(options.threads, processorCount(), work, physicalMemory(), memory);
    }

    Outcome<std::vector<PackedBlock>> run()
    {
        packInParts();
        std::vector<std::thread> threads;
        try {
            for (unsigned i = 1; i < m_threads; ++i) {
                threads.emplace_back([this] { packOthers(); });
            }
        } catch (const std::system_error &) {
            // The system has no more threads. Those that run do all the work.
        }
        packOthers();
        for (std::thread &thread : threads) {
            thread.join();
        }
        if (m_failure) {
            return *m_failure;
        }
        return std::move(m_packed);
    }

private:
    // These are the first blocks.
    void packInParts()
    {
        std::optional<BlockPacker> packer;
        while (m_next < m_blocks.size() && m_plans[m_next].partSize != 0 && !hasFailed()) {
            pack(packer, m_next++);
        }
    }

    void packOthers()
    {
        std::optional<BlockPacker> packer;
        for (std::size_t number = m_next++; number < m_blocks.size() && !hasFailed();
             number = m_next++) {
            pack(packer, number);
        }
    }

    void pack(std::optional<BlockPacker> &packer, std::size_t number)
    {
        try {
            if (!packer) {
                packer.emplace(m_source, m_output, m_progress);
            }
            auto packed = packer->pack(m_blocks[number], number, m_plans[number], m_threads);
            if (packed.hasFailed()) {
                fail(packed.failure());
            } else {
                m_packed[number] = std::move(packed.value());
            }
        } catch (const std::bad_alloc &) {
            fail({ExitStatus::NoMemory, "there is not enough memory"});
        }
    }

    // The first failure is the reason; the threads that it stops fail as interrupted.
    void fail(const Failure &failure)
    {
        {
            const std::lock_guard lock(m_mutex);
            if (!m_failure) {
                m_failure = failure;
            }
        }
        m_progress.stop();
        m_output.abandon();
    }

    bool hasFailed()
    {
        const std::lock_guard lock(m_mutex);
        return m_failure.has_value();
    }

    const Source &m_source;
    const std::vector<SolidBlock> &m_blocks;
    OrderedOutput &m_output;
    Progress &m_progress;
    std::vector<FramePlan> m_plans;
    unsigned m_threads = 1;
    std::atomic<std::size_t> m_next = 0;
    std::vector<PackedBlock> m_packed;
    std::mutex m_mutex;
    std::optional<Failure> m_failure;
};

} // namespace

Outcome<std::vector<PackedBlock>> packBlocks(const Source &source,
                                             const std::vector<SolidBlock> &blocks,
                                             const PackOptions &options, OrderedOutput &output,
                                             Progress &progress)
{
    return Packing(source, blocks, options, output, progress).run();
}

unsigned threadsFor(unsigned wanted, unsigned processors, std::size_t work, std::uint64_t memory,
                    std::uint64_t memoryForEach)
{
    std::uint64_t threads = wanted != 0 ? wanted : processors;
    threads = std::min<std::uint64_t>(threads, work);
    if (memory != 0 && memoryForEach != 0) {
        threads = std::min(threads, memory / 2 / memoryForEach);
    }
    return static_cast<unsigned>(std::max<std::uint64_t>(threads, 1));
}

} // namespace fast
