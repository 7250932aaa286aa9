// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "cli/enginetexts.h"

// Some lines begin with the word for a warning although nothing is wrong. No job can show its
// product's icon, and a main program without an icon is no mistake. A user's icon file that cannot
// be used has another warning.
const QList<EngineText> &engineTexts()
{
    constexpr auto information = LogLineKind::Information;
    constexpr auto warning = LogLineKind::Warning;
    constexpr auto error = LogLineKind::Error;
    static const QList<EngineText> texts{
        {"开始创建便携应用...", "Creating the portable application..."},
        {"源文件夹: %1", "Folder: %1"},
        {"主程序: %1", "Main program: %1"},
        {"输出目录: %1", "Output directory: %1"},
        {"错误：源文件夹不存在", "Error: the folder does not exist", error},
        {"错误：主程序不存在于源文件夹中", "Error: the main program is not in the folder", error},
        {"错误：无法复制7zr.exe到临时目录",
         "Error: 7zr.exe cannot be copied to the temporary directory", error},
        {"执行命令: %1 %2", "Running: %1 %2"},
        {"错误：无法启动7z.exe，路径: %1", "Error: the archiver cannot be started: %1", error},
        {"错误详情: %1", "Error details: %1", error},
        {"7z错误输出: %1", "Error output of the archiver: %1", error},
        {"压缩包创建成功", "The archive is complete", information, JobStage::Assembly},
        {"错误：无法复制SFX模块", "Error: the self-extractor module cannot be copied", error},
        {"错误：无法读取SFX模块", "Error: the self-extractor module cannot be read", error},
        {"SFX模块写入成功", "The self-extractor module is written"},
        {"配置数据写入成功，大小: %1 字节", "The configuration is written: %1 bytes"},
        {"配置内容:", "Configuration:"},
        {"错误：无法读取压缩包文件", "Error: the archive cannot be read", error},
        {"准备写入压缩包数据，大小: %1 字节", "Writing the archive: %1 bytes"},
        {"压缩包数据写入完成，共写入: %1 字节", "The archive is written: %1 bytes"},
        {"错误：无法创建输出文件: %1", "Error: the output file cannot be created: %1", error},
        {"使用用户提供的图标文件", "Using the given icon file", information, JobStage::Icon},
        {"警告：提供的图标文件无效，将尝试从主程序提取图标",
         "Warning: the given icon file cannot be used; trying the main program's icon", warning},
        {"尝试从主程序提取图标...", "Reading the main program's icon...", information,
         JobStage::Icon},
        {"警告：无法从主程序提取有效图标，将创建无图标的应用",
         "The main program has no usable icon; the executable gets none"},
        {"成功从主程序提取图标", "The main program's icon is read"},
        {"警告：无法从EXE提取图标", "The main program has no icon"},
        {"错误：无法获取图标信息", "Error: there is no information about the icon", error},
        {"错误：无法将图标转换为位图", "Error: the icon cannot be converted to a bitmap", error},
        {"错误：图标转换失败", "Error: the icon cannot be converted", error},
        {"成功提取图标，大小: %1 字节", "The icon is read: %1 bytes"},
        {"图标数据太小，至少需要6字节", "The icon is too small: it needs at least 6 bytes"},
        {"无效的ICO文件头", "The file does not begin as an icon file does", warning},
        {"无法将数据加载为ICO格式", "The data cannot be read as an icon", warning},
        {"图标验证通过 - 尺寸: %1x%2", "The icon is good: %1x%2"},
        {"开始替换EXE图标...", "Replacing the executable's icon..."},
        {"错误：无法创建备份文件", "Error: the backup file cannot be created", error},
        {"错误：无法复制ResourceHacker到临时目录",
         "Error: the resource editor cannot be copied to the temporary directory", error},
        {"错误：无法创建临时图标文件", "Error: the temporary icon file cannot be created", error},
        {"警告：ResourceHacker删除旧图标失败，可能原本没有图标",
         "Warning: the resource editor could not remove the older icon; maybe there was none",
         warning},
        {"错误：ResourceHacker添加新图标失败", "Error: the resource editor could not add the icon",
         error},
        {"警告：无法从EXE加载图标，可能需要重启资源管理器",
         "The executable's icon cannot be shown here; Explorer may show it after a restart"},
        {"最终EXE图标尺寸: %1x%2", "Size of the executable's icon: %1x%2"},
        {"图标包含透明通道", "The icon has transparency"},
        {"警告：图标不包含透明通道", "The icon has no transparency"},
        {"图标替换完成，已强制更新图标缓存", "The executable has its icon"},
        {"警告：图标替换失败", "Warning: the icon could not be replaced", warning},
        {"图标替换成功！", "The icon is replaced"},
        {"创建单文件失败", "Error: the executable was not made", error},
        {"成功创建便携应用！", "The portable application is complete"},
        {"最终文件大小: %1 字节", "Size of the executable: %1 bytes"},
    };
    return texts;
}
