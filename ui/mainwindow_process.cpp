// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

// Handlers for an external program that the window itself would run. No such program exists yet:
// the programs of a job run in the worker.

#include "packaging/archiveroutput.h"
#include "ui/logappender.h"
#include "ui/mainwindow.h"
#include "ui_mainwindow.h"

void MainWindow::handleProcessOutput()
{
    const QString output = QString::fromLocal8Bit(process->readAllStandardOutput());
    if (const auto percentage = firstPercentage(output)) {
        ui->progressBar->setValue(*percentage);
    }
    log->append(output.trimmed());
}

// Only the exit code counts; the exit status is ignored.
void MainWindow::handleProcessFinished(int exitCode, QProcess::ExitStatus)
{
    if (exitCode == 0) {
        log->append(tr("处理完成！"));
        ui->progressBar->setValue(100);
    } else {
        log->append(tr("处理失败，错误代码: %1").arg(exitCode));
    }
    setProcessingState(false);
}

void MainWindow::handleProcessError(QProcess::ProcessError error)
{
    const auto textOf = [](QProcess::ProcessError kind) {
        switch (kind) {
        case QProcess::FailedToStart:
            return tr("无法启动程序");
        case QProcess::Crashed:
            return tr("程序崩溃");
        case QProcess::Timedout:
            return tr("操作超时");
        case QProcess::ReadError:
            return tr("读取错误");
        case QProcess::WriteError:
            return tr("写入错误");
        case QProcess::UnknownError:
            break;
        }
        return tr("未知错误");
    };
    const QString details = QString::fromLocal8Bit(process->readAllStandardError());
    const QString output = QString::fromLocal8Bit(process->readAllStandardOutput());
    log->append(tr("发生错误: %1").arg(textOf(error)));
    log->append(tr("错误详情: %1").arg(details));
    log->append(tr("程序输出: %1").arg(output));
    setProcessingState(false);
}

void MainWindow::updateProgress(int value)
{
    ui->progressBar->setValue(value);
}
