// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "icons/iconreplacement.h"

#include "icons/iconimages.h"
#include "icons/resourceeditorcommand.h"
#include "platform/bundledtool.h"
#include "platform/helperprocess.h"
#include "platform/joblog.h"
#include "platform/platform.h"

#include <QDir>
#include <QFile>

namespace {

using namespace std::chrono_literals;

constexpr int deleteRunLimitMs = 3000;
constexpr int addRunLimitMs = 5000;

bool makeBackup(const QString &executable, const QString &backup)
{
    if (QFile::exists(backup)) {
        QFile::remove(backup);
    }
    return QFile::copy(executable, backup);
}

bool writeTemporaryIcon(const QString &path, const QByteArray &icon)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        return false;
    }
    file.write(icon);
    return true;
}

// Both runs use one process object. If the delete run is still running when its time is over, the
// add run does not start, and the second wait is for the end of the first run. The editor's exit
// code is not checked.
bool runResourceEditor(const QString &editor, const QString &executable, const QString &icon,
                       const LogSink &log)
{
    HelperProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.startHelper(editor, deleteIconsArguments(executable));
    if (!process.waitForFinished(deleteRunLimitMs)) {
        log(WorkerText::tr("警告：ResourceHacker删除旧图标失败，可能原本没有图标"));
    }
    process.startHelper(editor, addIconArguments(executable, icon));
    if (!process.waitForFinished(addRunLimitMs)) {
        log(WorkerText::tr("错误：ResourceHacker添加新图标失败"));
        return false;
    }
    return true;
}

// Each whole string, including its switches, is used as the name of a program, without a command
// interpreter.
void refreshIconCache()
{
    platform().startDetached(QStringLiteral("ie4uinit.exe -ClearIconCache"));
    platform().pause(500ms);
    platform().startDetached(QStringLiteral("ie4uinit.exe -show"));
    platform().pause(500ms);
    platform().startDetached(QStringLiteral("taskkill /F /IM explorer.exe & start explorer.exe"));
    platform().pause(1000ms);
    platform().notifyAssociationsChanged();
}

void logVisibleIcon(const QString &executable, const LogSink &log)
{
    const auto image = iconImages().visibleImage(executable);
    if (!image) {
        log(WorkerText::tr("警告：无法从EXE加载图标，可能需要重启资源管理器"));
        return;
    }
    log(WorkerText::tr("最终EXE图标尺寸: %1x%2")
            .arg(image->size.width())
            .arg(image->size.height()));
    log(image->hasAlphaChannel ? WorkerText::tr("图标包含透明通道")
                               : WorkerText::tr("警告：图标不包含透明通道"));
}

} // namespace

bool replaceIconOfExecutable(const QString &executable, const QByteArray &icon, const LogSink &log)
{
    const QString backup = iconBackupPath(executable);
    const QString editor = QDir::tempPath() + "/ResourceHacker.exe";
    const QString temporaryIcon = temporaryIconPath();

    if (!makeBackup(executable, backup)) {
        log(WorkerText::tr("错误：无法创建备份文件"));
        return false;
    }
    if (!provideBundledTool(QStringLiteral(":/resources/ResourceHacker.exe"), editor)) {
        log(WorkerText::tr("错误：无法复制ResourceHacker到临时目录"));
        return false;
    }
    if (!writeTemporaryIcon(temporaryIcon, icon)) {
        log(WorkerText::tr("错误：无法创建临时图标文件"));
        return false;
    }

    const bool added = runResourceEditor(editor, executable, temporaryIcon, log);
    if (added) {
        refreshIconCache();
    }
    QFile::remove(temporaryIcon);
    QFile::remove(backup);
    if (!added) {
        return false;
    }
    logVisibleIcon(executable, log);
    log(WorkerText::tr("图标替换完成，已强制更新图标缓存"));
    return true;
}

QString iconBackupPath(const QString &executable)
{
    return executable + ".bak";
}

QString temporaryIconPath()
{
    return QDir::tempPath() + "/temp_icon.ico";
}
