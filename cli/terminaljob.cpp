// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "cli/terminaljob.h"

#include "cli/archivecheck.h"
#include "cli/exitstatus.h"
#include "cli/interrupt.h"

#include <QFile>
#include <QFileInfo>

namespace {

// Windows does not load a program file whose size needs more than 32 bits.
constexpr qint64 largestProgramSize = 0xFFFFFFFF;

} // namespace

TerminalJob::TerminalJob(const PackagingJob &job, OutputGuard &guard, Console &console)
    : m_job(job)
    , m_outputDir(job.outputDir)
    , m_guard(guard)
    , m_console(console)
    , m_platform(m_gate)
{
    m_job.archivePath = m_archive.archivePath();
    m_job.outputDir = m_guard.directory();
    setPlatform(&m_platform);
    m_worker.moveToThread(&m_thread);

    // The worker's thread passes the gate before the signal is queued to this thread.
    connect(
        &m_worker, &Worker::logMessage, &m_worker, [this] { m_gate.pass(); }, Qt::DirectConnection);
    connect(
        &m_worker, &Worker::progressChanged, &m_worker, [this] { m_gate.pass(); },
        Qt::DirectConnection);
    connect(&m_worker, &Worker::logMessage, this, &TerminalJob::show);
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
    if (!m_archive.isValid()) {
        m_console.showMessage(
            QStringLiteral("cannot create a temporary directory for the archive: %1")
                .arg(m_archive.errorString()));
        m_hasEnded = true;
        m_guard.release();
        emit ended(ExitJobFailed);
        return;
    }
    m_thread.start();
    QMetaObject::invokeMethod(&m_worker, [this] { m_worker.run(m_job); });
}

// Shows the user's output directory in the log, not the private directory.
void TerminalJob::show(QString line)
{
    m_console.showLogLine(line.replace(m_job.outputDir, m_outputDir));
}

void TerminalJob::finish(bool success)
{
    m_hasEnded = true;
    m_console.clearProgress();
    const QString reason = problem(success);
    if (reason.isEmpty()) {
        tellSuccess();
    } else {
        m_console.showMessage(reason);
    }
    m_archive.remove();
    m_guard.release();
    emit ended(reason.isEmpty() ? ExitDone : ExitJobFailed);
}

// The engine treats an archiver that is silent for too long as finished, and does not notice a full
// disk. The checks of the files find both.
QString TerminalJob::problem(bool success) const
{
    if (!success) {
        return QStringLiteral("the job failed; see the lines above");
    }
    QFile archive(m_archive.archivePath());
    if (!archive.open(QIODevice::ReadOnly) || !isWholeArchive(archive)) {
        return QStringLiteral(
                   "the archiver did not finish: the archive is incomplete, and %1 was not "
                   "made; did the computer sleep, or was the archiver stopped?")
            .arg(m_guard.output());
    }
    QFile made(m_guard.madeFile());
    if (!made.open(QIODevice::ReadOnly) || !endsWithArchive(made, archive)) {
        return QStringLiteral("%1 could not be written in full; is the disk full?")
            .arg(m_guard.output());
    }
    made.close();
    const QString error = m_guard.putInPlace();
    return error.isEmpty()
        ? QString()
        : QStringLiteral("cannot move the executable to %1: %2").arg(m_guard.output(), error);
}

void TerminalJob::tellSuccess()
{
    const qint64 size = QFileInfo(m_guard.output()).size();
    if (size > largestProgramSize) {
        m_console.showMessage(
            QStringLiteral("warning: %1 has %2 bytes; Windows does not start program files "
                           "of 4 GiB or more")
                .arg(m_guard.output())
                .arg(size));
    }
    m_console.showInformation(m_guard.output());
}

void TerminalJob::interrupt(int cause)
{
    if (m_hasEnded) {
        return; // too late: the exit status reports the job's result
    }
    m_platform.killHelper();
    m_gate.close(timeToStop(cause)); // the engine notices that its helper was killed
    // If the time runs out, what is left is better in the temporary directory than beside the
    // output.
    m_guard.release();
    m_archive.remove();
    QFile::remove(PackagingJob::temporaryIconPath()); // the stopped engine could not remove it
    m_console.showMessage(QStringLiteral("interrupted; %1 was not made").arg(m_guard.output()));
    endAsInterrupted(cause);
}
