// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

// For the benchmarks: runs one job of the engine without its fixed pauses, or only the assembly of
// the output:
//   benchjob FOLDER ARCHIVE OUTPUT-DIR MAIN-PROGRAM LEVEL
//   benchjob assemble ARCHIVE OUTPUT-DIR MAIN-PROGRAM
// Prints the time in seconds, and the peak memory of this process (without its helpers) in KiB.

#include "packaging/outputassembly.h"
#include "packaging/worker.h"
#include "platform/nativeplatform.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>

#include <cstdio>

namespace {

class UnpausedPlatform final : public NativePlatform
{
public:
    void pause(std::chrono::milliseconds) override {}
};

QByteArray peakMemory()
{
    QFile status("/proc/self/status");
    if (status.open(QIODevice::ReadOnly)) {
        for (const QByteArray &line : status.readAll().split('\n')) {
            if (line.startsWith("VmHWM:")) {
                return line.mid(6).replace("kB", "").trimmed();
            }
        }
    }
    return "unknown";
}

bool runJob(const QStringList &arguments)
{
    bool success = false;
    Worker worker;
    QObject::connect(&worker, &Worker::finished, &worker, [&](bool done) { success = done; });
    worker.createPortableApp(arguments[1], arguments[2], arguments[3], arguments[4], {},
                             arguments[5], "LZMA", "16M");
    return success;
}

bool assemble(const QStringList &arguments)
{
    PackagingJob job;
    job.archivePath = arguments[2];
    job.outputDir = arguments[3];
    job.mainExeName = arguments[4];
    return assembleOutput(job,
                          {[](const QString &) {},
                           [](int) {
                           }});
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const bool assembles = arguments.size() == 5 && arguments[1] == "assemble";
    if (!assembles && arguments.size() != 6) {
        std::fputs("usage: benchjob FOLDER ARCHIVE OUTPUT-DIR MAIN-PROGRAM LEVEL\n"
                   "       benchjob assemble ARCHIVE OUTPUT-DIR MAIN-PROGRAM\n",
                   stderr);
        return 2;
    }
    UnpausedPlatform unpaused;
    setPlatform(&unpaused);
    QElapsedTimer timer;
    timer.start();
    const bool success = assembles ? assemble(arguments) : runJob(arguments);
    std::printf("%.3f %s\n", static_cast<double>(timer.nsecsElapsed()) / 1e9,
                peakMemory().constData());
    setPlatform(nullptr);
    return success ? 0 : 1;
}
