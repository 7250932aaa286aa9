// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

// The parts of scripts/bench-start that a shell cannot do:
//   benchstart offset FILE              prints the offset of the archive in a produced executable
//   benchstart decode FILE              decodes that archive and writes no files
//   benchstart run SERVER COMMAND...    measures the command; SERVER is wineserver's id, or 0
// `run` prints: wall seconds, processor seconds, the server's part of these, peak memory in KiB,
// number of processes, exit code.

#include "bench/start/decoding.h"
#include "bench/start/measuredrun.h"

#include <cstdio>
#include <cstdlib>
#include <string_view>

int main(int argc, char *argv[])
{
    const std::string_view task = argc > 1 ? argv[1] : "";
    if (task == "offset" && argc == 3) {
        return printArchiveOffset(argv[2]) ? 0 : 1;
    }
    if (task == "decode" && argc == 3) {
        return decodeIntoNothing(argv[2]) ? 0 : 1;
    }
    if (task == "run" && argc > 3) {
        const RunCost cost = runMeasured(argv + 3, static_cast<pid_t>(std::atoi(argv[2])));
        std::printf("%.3f %.3f %.3f %ld %d %d\n", cost.wallSeconds, cost.processorSeconds,
                    cost.serverSeconds, cost.peakKibibytes, cost.processes, cost.exitCode);
        return 0;
    }
    std::fputs("usage: benchstart offset FILE | decode FILE | run SERVER COMMAND...\n", stderr);
    return 2;
}
