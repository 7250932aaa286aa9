// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "packaging/worker.h"

#include "icons/iconimages.h"
#include "icons/iconreplacement.h"
#include "icons/iconvalidation.h"
#include "packaging/archiverrun.h"
#include "packaging/outputassembly.h"
#include "packaging/packagingjob.h"
#include "platform/helperprocess.h"
#include "platform/platform.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

using namespace std::chrono_literals;

void Worker::createPortableApp(const QString &folderPath, const QString &archivePath,
                               const QString &outputDir, const QString &mainExeName,
                               const QString &iconPath, const QString &compressionLevel,
                               const QString &compressionMethod, const QString &dictionarySize)
{
    run({folderPath, archivePath, outputDir, mainExeName, iconPath, compressionLevel,
         compressionMethod, dictionarySize});
}

void Worker::run(const PackagingJob &job)
{
    const bool success = runSteps(job);
    emit finished(success);
}

bool Worker::runSteps(const PackagingJob &job)
{
    if (!checkInputs(job)) {
        return false;
    }
    // Exists until the job ends: its destructor kills an archiver that is silent but still runs.
    HelperProcess archiver;
    archiver.setWorkingDirectory(QDir::tempPath());

    const JobReport report{[this](const QString &message) { emit logMessage(message); },
                           [this](int value) {
                               emit progressChanged(value);
                           }};
    if (!createArchive(job, archiver, report) || !assembleOutput(job, report)) {
        return false;
    }

    const QString executable = job.outputPath();
    const QByteArray icon = chooseIcon(job);
    if (!icon.isEmpty()) {
        installIcon(executable, icon);
    }
    return finishOutput(executable);
}

bool Worker::checkInputs(const PackagingJob &job)
{
    emit logMessage(tr("开始创建便携应用..."));
    emit logMessage(tr("源文件夹: %1").arg(job.folderPath));
    emit logMessage(tr("主程序: %1").arg(job.mainExeName));
    emit logMessage(tr("输出目录: %1").arg(job.outputDir));
    if (!QDir(job.folderPath).exists()) {
        emit logMessage(tr("错误：源文件夹不存在"));
        return false;
    }
    if (!QFile::exists(job.mainExePath())) {
        emit logMessage(tr("错误：主程序不存在于源文件夹中"));
        return false;
    }
    return true;
}

// Returns the user's icon, or the main program's icon, or nothing if neither is usable.
QByteArray Worker::chooseIcon(const PackagingJob &job)
{
    QByteArray icon = userIcon(job.iconPath);
    if (!icon.isEmpty()) {
        return icon;
    }
    // `program` is never empty, because it contains at least the separator. Keep this check anyway;
    // it is part of the design.
    const QString program = job.mainExePath();
    if (job.iconPath.isEmpty() && program.isEmpty()) {
        return {};
    }
    emit logMessage(tr("尝试从主程序提取图标..."));
    icon = extractIconFromExe(program);
    if (!validateIconData(icon)) {
        emit logMessage(tr("警告：无法从主程序提取有效图标，将创建无图标的应用"));
        return {};
    }
    emit logMessage(tr("成功从主程序提取图标"));
    return icon;
}

// Returns nothing if the user gave no icon file, or if it is missing, unreadable or unusable. Only
// an unusable icon gets a line in the log.
QByteArray Worker::userIcon(const QString &iconPath)
{
    QFile file(iconPath);
    if (iconPath.isEmpty() || !QFile::exists(iconPath) || !file.open(QIODevice::ReadOnly)) {
        return {};
    }
    const QByteArray icon = file.readAll();
    if (!validateIconData(icon)) {
        emit logMessage(tr("警告：提供的图标文件无效，将尝试从主程序提取图标"));
        return {};
    }
    emit logMessage(tr("使用用户提供的图标文件"));
    return icon;
}

void Worker::installIcon(const QString &executable, const QByteArray &icon)
{
    emit logMessage(tr("开始替换EXE图标..."));
    if (!replaceExeIcon(executable, icon)) {
        emit logMessage(tr("警告：图标替换失败"));
        return;
    }
    emit logMessage(tr("图标替换成功！"));
    platform().pause(1s);
}

bool Worker::finishOutput(const QString &executable)
{
    if (!QFile::exists(executable)) {
        emit logMessage(tr("创建单文件失败"));
        return false;
    }
    QFile::setPermissions(executable,
                          QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner
                              | QFileDevice::ReadGroup | QFileDevice::ExeGroup
                              | QFileDevice::ReadOther | QFileDevice::ExeOther);
    emit logMessage(tr("成功创建便携应用！"));
    emit logMessage(tr("最终文件大小: %1 字节").arg(QFileInfo(executable).size()));
    emit progressChanged(100);
    return true;
}

bool Worker::validateIconData(const QByteArray &data)
{
    return isUsableIcon(data, [this](const QString &message) { emit logMessage(message); });
}

QByteArray Worker::extractIconFromExe(const QString &executable)
{
    return iconImages().iconOfExecutable(executable, [this](const QString &message) {
        emit logMessage(message);
    });
}

bool Worker::replaceExeIcon(const QString &executable, const QByteArray &icon)
{
    return replaceIconOfExecutable(executable, icon,
                                   [this](const QString &message) { emit logMessage(message); });
}
