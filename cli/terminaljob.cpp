// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "cli/terminaljob.h"

#include "cli/archivecheck.h"
#include "cli/exitstatus.h"
#include "cli/interrupt.h"
#include "cli/language.h"
#include "cli/logline.h"

#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>

namespace {

// Windows does not load a program file whose size needs more than 32 bits.
constexpr qint64 largestProgramSize = 0xFFFFFFFF;

QString sha256Of(const QString &path)
{
    QFile file(path);
    QCryptographicHash hash(QCryptographicHash::Sha256);
    return file.open(QIODevice::ReadOnly) && hash.addData(&file)
        ? QString::fromLatin1(hash.result().toHex())
        : QString();
}

} // namespace

TerminalJob::TerminalJob(const PreparedJob &job, OutputGuard &guard, PrivateDirectory &temporary,
                         Console &console, const Afterwards &afterwards)
    : m_prepared(job)
    , m_job(job.job)
    , m_guard(guard)
    , m_temporary(temporary)
    , m_console(console)
    , m_afterwards(afterwards)
    , m_platform(m_gate)
{
    m_job.archivePath = m_temporary.archivePath();
    m_job.outputDir = m_guard.directory();
    m_platform.setProgramIconUsed(!job.options.noIcon);
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
    connect(
        this, &TerminalJob::iconAdded, this,
        [this] {
            m_console.showWarning(
                text("the resource editor has not added the icon, probably because "
                     "this machine is busy; it has been added now"));
        },
        Qt::QueuedConnection);
    connect(
        this, &TerminalJob::checking, this, [this] { m_clock.begin("check"); },
        Qt::QueuedConnection);
    connect(this, &TerminalJob::completed, this, &TerminalJob::finish, Qt::QueuedConnection);
}

TerminalJob::~TerminalJob()
{
    m_thread.quit();
    m_thread.wait();
    setPlatform(nullptr);
}

void TerminalJob::start()
{
    m_console.showEvent("start",
                        {{"folder", m_prepared.tree.folder},
                         {"main", m_job.mainExeName},
                         {"path", m_guard.output()}});
    m_clock.begin("archive");
    m_thread.start();
    QMetaObject::invokeMethod(&m_worker, [this] { runEngineAndCheck(); });
}

// On the job's thread.
void TerminalJob::runEngineAndCheck()
{
    bool success = false;
    const auto connection = connect(
        &m_worker, &Worker::finished, &m_worker, [&success](bool done) { success = done; },
        Qt::DirectConnection);
    m_worker.run(m_job);
    disconnect(connection);
    m_gate.pass();
    const QString wrongIcon = success ? iconProblem() : QString();
    emit checking();
    QString wrong = problem(success);
    if (wrong.isEmpty()) {
        wrong = wrongIcon;
    }
    const QString sha256 = wrong.isEmpty() && m_console.isJson() ? sha256Of(m_guard.madeFile())
                                                                 : QString();
    m_gate.pass();
    emit completed(wrong, sha256);
}

QString TerminalJob::iconProblem()
{
    if (!m_afterwards.keepIcon) {
        return {};
    }
    const ProductIcon icon = m_afterwards.keepIcon(m_guard.madeFile(), m_job.iconPath);
    if (icon.wasAdded) {
        emit iconAdded();
    }
    return icon.problem.isEmpty() ? QString()
                                  : text("%1 was not made: %2").arg(m_guard.output(), icon.problem);
}

// The engine treats an archiver that is silent for too long as finished, and does not notice a full
// disk. The checks of the files find both. If every byte of the executable was decoded and is right,
// it need not be compared with the archive.
QString TerminalJob::problem(bool success) const
{
    if (!success) {
        return text("the job failed; see the lines above");
    }
    QFile archive(m_job.archivePath);
    if (!archive.open(QIODevice::ReadOnly) || !isWholeArchive(archive)) {
        return text("the archiver did not finish: the archive is incomplete, and %1 was not "
                    "made; did the computer sleep, or was the archiver stopped?")
            .arg(m_guard.output());
    }
    const ProductCheck &check = m_afterwards.check;
    const bool isDecoded = check && m_prepared.options.verify;
    const QString refusal = check ? check(m_guard.madeFile(), isDecoded) : QString();
    if (isDecoded && refusal.isEmpty()) {
        return {};
    }
    QFile made(m_guard.madeFile());
    if (!made.open(QIODevice::ReadOnly) || !endsWithArchive(made, archive)) {
        return text("%1 could not be written in full; is the disk full?").arg(m_guard.output());
    }
    return refusal.isEmpty()
        ? QString()
        : text("%1 was not made: it would not start: %2").arg(m_guard.output(), refusal);
}

// Shows the user's paths in the log, not those of the private directory.
void TerminalJob::show(QString line)
{
    switch (stageBegunBy(line)) {
    case JobStage::Assembly:
        m_clock.begin("assembly");
        break;
    case JobStage::Icon:
        m_clock.begin("icon");
        break;
    case JobStage::Archive:
    case JobStage::Unchanged:
        break;
    }
    line.replace(m_guard.madeFile(), m_guard.output());
    line.replace(m_job.folderPath, m_prepared.tree.folder);
    m_console.showLogLine(line.replace(m_job.outputDir, m_prepared.job.outputDir));
}

void TerminalJob::finish(QString problem, const QString &sha256)
{
    m_hasEnded = true;
    m_console.clearProgress();
    if (problem.isEmpty()) {
        const QString error = m_guard.putInPlace();
        if (!error.isEmpty()) {
            problem = text("cannot move the executable to %1: %2").arg(m_guard.output(), error);
        }
    }
    m_clock.end();
    if (problem.isEmpty()) {
        tellSuccess(sha256);
    } else {
        m_console.showMessage(problem);
    }
    m_temporary.remove();
    m_guard.release();
    emit ended(problem.isEmpty() ? ExitDone : ExitJobFailed);
}

void TerminalJob::tellSuccess(const QString &sha256)
{
    const qint64 size = QFileInfo(m_guard.output()).size();
    if (size > largestProgramSize) {
        m_console.showWarning(text("%1 has %2 bytes; Windows does not start program files "
                                   "of 4 GiB or more")
                                  .arg(m_guard.output())
                                  .arg(size));
    }
    if (!canCheckProducts()) {
        m_console.showInformation(
            text("the executable was not checked: this build cannot read produced files"));
    }
    if (m_console.isJson()) {
        m_console.showEvent("done",
                            {{"path", m_guard.output()},
                             {"size", size},
                             {"sha256", sha256},
                             {"seconds", m_clock.seconds()}});
    } else {
        m_console.showInformation(m_guard.output());
    }
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
    m_temporary.remove();
    m_console.showMessage(text("interrupted; %1 was not made").arg(m_guard.output()));
    endAsInterrupted(cause);
}
