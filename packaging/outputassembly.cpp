// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "packaging/outputassembly.h"

#include "packaging/blockwriter.h"
#include "packaging/outputname.h"
#include "platform/bundledtool.h"
#include "platform/joblog.h"
#include "platform/platform.h"

#include <QDir>
#include <QFile>

namespace {

constexpr qint64 chunkSize = 1048576;

bool writeModule(const QString &path, QFile &output, const LogSink &log)
{
    QFile module(path);
    if (!platform().reasonNotToUse(path).isEmpty() || !module.open(QIODevice::ReadOnly)) {
        log(WorkerText::tr("错误：无法读取SFX模块"));
        return false;
    }
    output.write(module.readAll());
    log(WorkerText::tr("SFX模块写入成功"));
    return true;
}

void writeBlock(const QString &mainExeName, QFile &output, const LogSink &log)
{
    const QString block = configurationBlock(outputBaseName(mainExeName), mainExeName);
    const QByteArray bytes = block.toUtf8();
    output.write(bytes);
    log(WorkerText::tr("配置数据写入成功，大小: %1 字节").arg(bytes.size()));
    log(WorkerText::tr("配置内容:") + '\n' + block);
}

bool appendArchive(const QString &path, QFile &output, const JobReport &report)
{
    // We read and write whole chunks; a second buffer inside QFile would only copy them once more.
    QFile archive(path);
    if (!archive.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        report.log(WorkerText::tr("错误：无法读取压缩包文件"));
        return false;
    }
    const qint64 size = archive.size();
    report.log(WorkerText::tr("准备写入压缩包数据，大小: %1 字节").arg(size));

    QByteArray buffer(chunkSize, Qt::Uninitialized);
    qint64 total = 0;
    while (!archive.atEnd()) {
        const qint64 count = archive.read(buffer.data(), chunkSize);
        if (count <= 0) {
            break;
        }
        total += output.write(buffer.constData(), count);
        if (size > 0) { // a silent archiver may still be writing to a file that was empty
            report.progress(static_cast<int>(50 + total * 50 / size));
        }
    }
    report.log(WorkerText::tr("压缩包数据写入完成，共写入: %1 字节").arg(total));
    return true;
}

} // namespace

bool assembleOutput(const PackagingJob &job, const JobReport &report)
{
    const QString modulePath = QDir::tempPath() + "/7zS2.sfx";
    if (!provideBundledTool(QStringLiteral(":/resources/7zS2.sfx"), modulePath)) {
        report.log(WorkerText::tr("错误：无法复制SFX模块"));
        return false;
    }
    QFile output(job.outputPath());
    if (!output.open(QIODevice::WriteOnly | QIODevice::Unbuffered)) {
        report.log(WorkerText::tr("错误：无法创建输出文件: %1").arg(output.fileName()));
        return false;
    }
    if (!writeModule(modulePath, output, report.log)) {
        return false;
    }
    writeBlock(job.mainExeName, output, report.log);
    return appendArchive(job.archivePath, output, report);
}
