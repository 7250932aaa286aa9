// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "packaging/archivercommand.h"
#include "packaging/blockwriter.h"
#include "packaging/packagingjob.h"
#include "packaging/worker.h"
#include "tests/fakes/fakeplatform.h"
#include "tests/fakes/privatetemp.h"
#include "tests/packaging/signalrecorder.h"
#include "tests/support/testfiles.h"
#include "tests/support/testicons.h"

// Whole jobs with fake helpers, and parts of their signal sequences.

// A folder with a program, an output directory, and helpers that work. Each test damages the part
// that it tests.
struct Surroundings
{
    Surroundings()
    {
        const QDir dir(temp.path());
        if (!dir.mkpath("source") || !dir.mkpath("output")
            || !writeFile(temp.filePath("source/my.tool.exe"), "program")) {
            qFatal("the surroundings could not be made");
        }
        temp.plantModule("module");
        temp.plantArchiver("print  40%\nwrite @3 1500000\n");
        temp.plantEditor("record " + temp.filePath("editor.txt").toUtf8() + '\n');
        platform.icon = extractedIcon(32, 32);
        job = {temp.filePath("source"),
               temp.filePath("temp.7z"),
               temp.filePath("output"),
               "my.tool.exe",
               {},
               "5",
               "LZMA",
               "16M"};
    }

    QStringList run()
    {
        Worker worker;
        SignalRecorder recorder(worker);
        worker.createPortableApp(job.folderPath, job.archivePath, job.outputDir, job.mainExeName,
                                 job.iconPath, job.compressionLevel, job.compressionMethod,
                                 job.dictionarySize);
        return recorder.signalsSeen;
    }

    QString output() const { return temp.filePath("output/my.exe"); }

    PrivateTemp temp;
    FakePlatform platform;
    PackagingJob job;
};

// The parts that form the expected sequences.
inline QStringList beginning(const Surroundings &s)
{
    return {"log 开始创建便携应用...", "log 源文件夹: " + s.job.folderPath,
            "log 主程序: " + s.job.mainExeName, "log 输出目录: " + s.job.outputDir};
}

inline QStringList command(const Surroundings &s)
{
    return {"log 执行命令: " + s.temp.filePath("7zr.exe") + ' '
            + archiverArguments(s.job).join(' ')};
}

inline QStringList archived(const Surroundings &s)
{
    return beginning(s) + command(s)
        + QStringList({"progress 40", "log 40%", "log 压缩包创建成功"});
}

inline QStringList moduleAndBlock()
{
    const QString block = configurationBlock("my", "my.tool.exe");
    return {"log SFX模块写入成功",
            QStringLiteral("log 配置数据写入成功，大小: %1 字节").arg(block.toUtf8().size()),
            "log 配置内容:\n" + block};
}

inline QStringList assembled(const Surroundings &s)
{
    return archived(s) + moduleAndBlock()
        + QStringList({"log 准备写入压缩包数据，大小: 1500000 字节", "progress 84", "progress 100",
                       "log 压缩包数据写入完成，共写入: 1500000 字节"});
}

inline QStringList extracted()
{
    const auto size = icoBytes(256, 256).size();
    return {"log 尝试从主程序提取图标...",
            QStringLiteral("log 成功提取图标，大小: %1 字节").arg(size),
            "log 图标验证通过 - 尺寸: 256x256", "log 成功从主程序提取图标"};
}

inline QStringList replaced()
{
    return {"log 开始替换EXE图标...", "log 警告：无法从EXE加载图标，可能需要重启资源管理器",
            "log 图标替换完成，已强制更新图标缓存", "log 图标替换成功！"};
}

inline QStringList done()
{
    const auto size = 6 + configurationBlock("my", "my.tool.exe").toUtf8().size() + 1500000;
    return {"log 成功创建便携应用！", QStringLiteral("log 最终文件大小: %1 字节").arg(size),
            "progress 100", "finished true"};
}
