// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "packaging/archiverrun.h"

#include "packaging/archivercommand.h"
#include "packaging/archiveroutput.h"
#include "platform/bundledtool.h"
#include "platform/helperprocess.h"
#include "platform/joblog.h"

#include <QDir>

namespace {

constexpr int startLimitMs = 5000;
constexpr int silenceLimitMs = 30000;
constexpr qsizetype keptOfStandardError = 1048576;

// Collects what the process writes to standard error, but keeps only the last mebibyte. QProcess
// would keep everything until it is read.
class StandardErrorTail
{
public:
    explicit StandardErrorTail(QProcess &process) : m_process(process)
    {
        QObject::connect(&process, &QProcess::readyReadStandardError, &m_context,
                         [this] { read(); });
    }

    QByteArray text()
    {
        read();
        return m_text;
    }

private:
    void read()
    {
        m_text += m_process.readAllStandardError();
        m_text.remove(0, m_text.size() - keptOfStandardError);
    }

    QProcess &m_process;
    QObject m_context; // its destruction ends the connection
    QByteArray m_text;
};

bool startArchiver(const QString &archiver, const PackagingJob &job, HelperProcess &process,
                   const LogSink &log)
{
    const QStringList arguments = archiverArguments(job);
    // One arg() call for both: a percent sign in the path must not be taken for a placeholder.
    log(WorkerText::tr("执行命令: %1 %2").arg(archiver, arguments.join(' ')));
    process.startHelper(archiver, arguments);
    if (!process.waitForStarted(startLimitMs)) {
        log(WorkerText::tr("错误：无法启动7z.exe，路径: %1").arg(archiver));
        log(WorkerText::tr("错误详情: %1").arg(process.errorString()));
        return false;
    }
    return true;
}

void followArchiver(HelperProcess &process, const JobReport &report)
{
    while (process.waitForReadyRead(silenceLimitMs)) {
        const QString chunk = QString::fromLocal8Bit(process.readAllStandardOutput());
        if (const auto percentage = firstPercentage(chunk)) {
            report.progress(*percentage);
        }
        report.log(chunk.trimmed());
    }
}

} // namespace

bool createArchive(const PackagingJob &job, HelperProcess &process, const JobReport &report)
{
    const QString archiver = QDir::tempPath() + "/7zr.exe";
    if (!provideBundledTool(QStringLiteral(":/resources/7zr.exe"), archiver)) {
        report.log(WorkerText::tr("错误：无法复制7zr.exe到临时目录"));
        return false;
    }
    if (!startArchiver(archiver, job, process, report.log)) {
        return false;
    }
    StandardErrorTail standardError(process);
    followArchiver(process, report);
    // A silent archiver is treated as finished; its exit code is then still 0.
    if (process.exitCode() != 0) {
        report.log(
            WorkerText::tr("7z错误输出: %1")
                .arg(archiverErrorText(standardError.text(), process.readAllStandardOutput())));
        return false;
    }
    report.log(WorkerText::tr("压缩包创建成功"));
    return true;
}
