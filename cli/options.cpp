// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "cli/options.h"

#include <algorithm>

// One paragraph for each option, in the order of the help.
// clang-format off
const QList<OptionInfo> &options()
{
    using Kind = OptionKind;
    using Is = ValueKind;
    static const QList<OptionInfo> all{
        {OptionId::Main, "main", 'm', Kind::Value, Is::Text, "PATH", "", Pack, true,
         "main program: a path in FOLDER, such as bin/app.exe; not needed if FOLDER itself contains exactly one .exe file",
         "主程序：FOLDER 里的路径，例如 bin/app.exe；FOLDER 里正好有一个 .exe 文件时可以省略"},
        {OptionId::Output, "output", 'o', Kind::Value, Is::Folder, "PATH", "", Pack | Extract, true,
         "where the executable goes: a folder (default: the current one; created if missing), or the path of the file, ending in .exe; extract: the new folder",
         "成品的位置：文件夹（默认为当前文件夹，没有则创建），或者以 .exe 结尾的文件路径；extract：新文件夹"},
        {OptionId::Name, "name", 'n', Kind::Value, Is::Text, "NAME", "", Pack, true,
         "the executable's file name, with or without .exe (default: the main program's name up to its first dot)",
         "成品的文件名，可带或不带 .exe（默认：主程序名字中第一个点之前的部分）"},
        {OptionId::Icon, "icon", 'i', Kind::Value, Is::File, "FILE|none", "", Pack, true,
         ".ico file, or none (default: the main program's icon)",
         ".ico 文件，或者 none 表示没有图标（默认：主程序的图标）"},
        {OptionId::Level, "level", 'l', Kind::Value, Is::Word, "LEVEL", "store|fastest|fast|normal|maximum|ultra", Pack, true,
         "compression: store, fastest, fast, normal (default), maximum, ultra",
         "压缩级别：store、fastest、fast、normal（默认）、maximum、ultra"},
        {OptionId::Method, "method", 'c', Kind::Value, Is::Word, "METHOD", "LZMA|LZMA2", Pack, true,
         "compression method: LZMA (default), LZMA2",
         "压缩方法：LZMA（默认）、LZMA2"},
        {OptionId::Profile, "profile", 0, Kind::Value, Is::Word, "PROFILE", "default|fast-start|small", Pack, true,
         "what matters most, instead of --level and --method: default, fast-start (the executable unpacks several times as fast, and is about a tenth larger), small",
         "最看重什么，代替 --level 和 --method：default、fast-start（成品解压快几倍，大约大十分之一）、small"},
        {OptionId::Console, "console", 0, Kind::Value, Is::Word, "WHEN", "auto|yes|no", Pack, true,
         "whether the executable is a console program: auto (default: as the main program is), yes, no",
         "成品是否为控制台程序：auto（默认，与主程序相同）、yes、no"},
        {OptionId::Cwd, "cwd", 0, Kind::Value, Is::Word, "WHERE", "app|caller|exe|auto", Pack, true,
         "working folder of the main program: app (the unpacked folder), caller, exe (the folder of the executable), auto (default: caller for console programs, otherwise app)",
         "主程序的工作文件夹：app（解压后的文件夹）、caller（调用者的文件夹）、exe（成品所在的文件夹）、auto（默认：控制台程序为 caller，其他为 app）"},
        {OptionId::Set, "set", 0, Kind::List, Is::Text, "FIELD=TEXT", "", Pack, true,
         "a text of the version information, such as ProductName=Example",
         "版本信息中的一项文字，例如 ProductName=Example"},
        {OptionId::Arguments, "arguments", 0, Kind::Value, Is::Text, "TEXT", "", Pack, true,
         "arguments for the main program, before the caller's",
         "主程序的参数，放在调用者的参数之前"},
        {OptionId::Title, "title", 0, Kind::Value, Is::Text, "TEXT", "", Pack, true,
         "the title of the executable's windows",
         "成品窗口的标题"},
        {OptionId::Silent, "silent", 0, Kind::Switch, Is::Text, "", "", Pack, true,
         "the executable shows no window while it unpacks",
         "成品解压时不显示窗口"},
        {OptionId::Keep, "keep", 0, Kind::Value, Is::Text, "DAYS", "", Pack, true,
         "the executable unpacks once, into the user's profile, and later starts use that; what was not used for DAYS (1 to 3650) is removed",
         "成品只解压一次，放在用户的配置文件夹里，以后启动直接使用；DAYS（1 到 3650）天没有使用就会删除"},
        {OptionId::KeepVerify, "keep-verify", 0, Kind::Switch, Is::Text, "", "", Pack, true,
         "with --keep: every start also compares the contents of the unpacked files",
         "与 --keep 一起使用：每次启动还要比较已解压文件的内容"},
        {OptionId::Exclude, "exclude", 'x', Kind::List, Is::Text, "GLOB", "", Pack, true,
         "leave out files and folders, such as *.pdb or .git/",
         "不打包的文件和文件夹，例如 *.pdb 或 .git/"},
        {OptionId::Mtime, "mtime", 0, Kind::Value, Is::Text, "TIME", "", Pack, true,
         "no packed file gets a later time: seconds since 1970, or a time such as 2026-01-31T12:00:00Z",
         "打包的文件时间不晚于此：自 1970 年起的秒数，或 2026-01-31T12:00:00Z 这样的时间"},
        {OptionId::Reproducible, "reproducible", 0, Kind::Switch, Is::Text, "", "", Pack, true,
         "the same input gives the same bytes on every machine",
         "相同的输入在任何机器上都得到相同的字节"},
        {OptionId::NoVerify, "no-verify", 0, Kind::Switch, Is::Text, "", "", Pack, true,
         "do not decode the finished executable to check it; its header and names are still checked",
         "不解码成品来检查内容；仍检查文件头和名字"},
        {OptionId::Quiet, "quiet", 'q', Kind::Switch, Is::Text, "", "", EveryCommand, true,
         "only warnings and errors",
         "只显示警告和错误"},
        {OptionId::Json, "json", 0, Kind::Switch, Is::Text, "", "", Pack | Inspect, true,
         "packing: one JSON object per line for each event; inspect: JSON, with the SHA-256 of each file",
         "打包：每个事件一行 JSON；inspect：JSON，含每个文件的 SHA-256"},
        {OptionId::Language, "language", 0, Kind::Value, Is::Word, "LANGUAGE", "en|zh", EveryCommand, true,
         "language of the messages: en, zh (default: as the system)",
         "消息的语言：en、zh（默认：与系统相同）"},
        {OptionId::Config, "config", 0, Kind::Value, Is::File, "FILE", "", Pack, false,
         "read options from an INI file: the long names are its keys; the command line has priority",
         "从 INI 文件读取选项：键就是长选项名；命令行优先"},
        {OptionId::Version, "version", 0, Kind::Switch, Is::Text, "", "", EveryCommand, false,
         "show the version",
         "显示版本"},
        {OptionId::Help, "help", 'h', Kind::Switch, Is::Text, "", "", EveryCommand, false,
         "show this help",
         "显示本帮助"},
    };
    return all;
}
// clang-format on

const OptionInfo &option(OptionId id)
{
    return options().at(static_cast<int>(id));
}

const OptionInfo *optionNamed(const QString &name)
{
    const auto &all = options();
    const auto found = std::find_if(all.begin(), all.end(), [&name](const OptionInfo &one) {
        return name == QLatin1String(one.name);
    });
    return found == all.end() ? nullptr : &*found;
}

QStringList wordsOf(const OptionInfo &option)
{
    return QString::fromLatin1(option.words).split('|', Qt::SkipEmptyParts);
}

QString lastValue(const OptionValues &values, OptionId id)
{
    const QStringList all = values.value(id);
    return all.isEmpty() ? QString() : all.constLast();
}
