// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "cli/terminaljob.h"

#include "cli/exitstatus.h"
#include "cli/interrupt.h"
#include "icons/iconreplacement.h"
#include "packaging/outputname.h"

#include <QFile>
#include <QFileInfo>

namespace {

using namespace std::chrono_literals;

// Windows does not load a program file whose size needs more than 32 bits.
constexpr qint64 largestProgramSize = 0xFFFFFFFF;

// Time for a killed helper's end to reach the engine.
constexpr auto stopLimit = 5s;

} // namespace

TerminalJob::TerminalJob(const PackagingJob &job, Console &console)
    : m_job(job)
    , m_console(console)
    , m_output(outputPath(job.outputDir, job.mainExeName))
    , m_guard(m_output)
    , m_platform(m_gate)
{
    m_job.archivePath = m_guard.archivePath();
    setPlatform(&m_platform);
    m_worker.moveToThread(&m_thread);

    // The gate is passed on the worker's thread, before the signal is on its way to this one.
    connect(
        &m_worker, &Worker::logMessage, &m_worker, [this] { m_gate.pass(); }, Qt::DirectConnection);
    connect(
        &m_worker, &Worker::progressChanged, &m_worker, [this] { m_gate.pass(); },
        Qt::DirectConnection);
    connect(&m_worker, &Worker::logMessage, this,
            [this](const QString &line) { m_console.showLogLine(line); });
    connect(&m_worker, &Worker::progressChanged, this,
            [this](int percentage) { m_console.showProgress(percentage); });
    connect(&m_worker, &Worker::finished, this, &TerminalJob::finish);
}

TerminalJob::~TerminalJob()
{
    m_thread.quit();
    m_thread.wait();
    setPlatform(nullptr);
}

void TerminalJob::start()
{
    if (!m_guard.isValid()) {
        m_console.showMessage(QStringLiteral("no directory for the archive could be made: %1")
                                  .arg(m_guard.errorString()));
        emit ended(ExitJobFailed);
        return;
    }
    m_guard.setOldOutputAside();
    m_thread.start();
    QMetaObject::invokeMethod(&m_worker, [this] {
        m_worker.createPortableApp(m_job.folderPath, m_job.archivePath, m_job.outputDir,
                                   m_job.mainExeName, m_job.iconPath, m_job.compressionLevel,
                                   m_job.compressionMethod, m_job.dictionarySize);
    });
}

void TerminalJob::finish(bool success)
{
    m_console.clearProgress();
    const bool done = concludeOutput(success);
    m_guard.removeArchive();
    emit ended(done ? ExitDone : ExitJobFailed);
}

bool TerminalJob::concludeOutput(bool success)
{
    const bool isWhole = success && m_guard.outputIsWhole();
    if (!isWhole) {
        m_guard.undoOutput();
        m_console.showMessage(
            success
                ? QStringLiteral("%1 could not be written in full; is the disk full?").arg(m_output)
                : QStringLiteral("the job failed; see the lines above"));
        return false;
    }
    m_guard.keepOutput();
    const qint64 size = QFileInfo(m_output).size();
    if (size > largestProgramSize) {
        m_console.showMessage(
            QStringLiteral("warning: %1 has %2 bytes; Windows starts no program file "
                           "of 4 GiB or more")
                .arg(m_output)
                .arg(size));
    }
    m_console.showInformation(m_output);
    return true;
}

void TerminalJob::interrupt(int cause)
{
    m_platform.killHelper();
    m_gate.close(stopLimit);
    m_guard.undoOutput();
    m_guard.removeArchive();
    QFile::remove(temporaryIconPath()); // the engine had no time to
    m_console.showMessage(QStringLiteral("interrupted; %1 was not made").arg(m_output));
    endAsInterrupted(cause);
}
