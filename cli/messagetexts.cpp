// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "cli/messagetexts.h"

// In the order of the files: first the command line and the configuration file, then the checks
// before a job, the job, and reading. At the end are texts of other libraries: Qt's parser, and
// inspection/.
const QList<MessageText> &messageTexts()
{
    static const QList<MessageText> texts{
        {"%1; --help shows the usage", "%1；用 --help 查看用法"},
        {"kestrelpack-cli: warning: %1", "kestrelpack-cli：警告：%1"},
        {"%1 needs one FILE", "%1 需要一个 FILE"},
        {"--%1 has no meaning for %2", "--%1 对 %2 没有意义"},
        {"more than one FOLDER was given: %1", "给出了多个 FOLDER：%1"},
        {"no FOLDER was given", "没有给出 FOLDER"},
        {"--%1 needs a non-empty value", "--%1 的值不能为空"},
        {"no such compression level: %1 (available: %2)", "没有这个压缩级别：%1（可用：%2）"},
        {"no such compression method: %1 (available: %2)", "没有这个压缩方法：%1（可用：%2）"},
        {"no such value for --%1: %2 (available: %3)", "--%1 没有这个值：%2（可用：%3）"},
        {"the value of --%1 has a control character in it", "--%1 的值含有控制字符"},
        {"--set needs FIELD=TEXT, not %1", "--set 需要 FIELD=TEXT，而不是 %1"},
        {"--set gives the field %1 twice", "--set 两次给出了字段 %1"},
        {"--json and --quiet contradict each other", "--json 与 --quiet 互相矛盾"},
        {"--mtime needs seconds since 1970, or a time with its zone such as 2026-01-31T12:00:00Z, "
         "not %1",
         "--mtime 需要自 1970 年起的秒数，或者带时区的时间（例如 2026-01-31T12:00:00Z），而不是 %1"},
        {"the configuration file %1 cannot be read", "无法读取配置文件 %1"},
        {"%1: there is no key %2", "%1：没有 %2 这个键"},
        {"%1: the value of the key %2 is no text", "%1：键 %2 的值不是文字"},
        {"%1: the key %2 takes one value; a value with commas needs double quotes",
         "%1：键 %2 只能有一个值；含逗号的值要放在双引号里"},
        {"%1: the key %2 takes yes or no", "%1：键 %2 的值是 yes 或 no"},
        {"%1: this is no INI file: each line needs a key, an equals sign and a value",
         "%1：这不是 INI 文件：每一行要有键、等号和值"},

        {"the folder %1 does not exist", "文件夹 %1 不存在"},
        {"%1 is not a folder", "%1 不是文件夹"},
        {"the folder %1 cannot be read", "无法读取文件夹 %1"},
        {"the path of the folder %1 has a * or ? in it, which the archiver takes for a pattern",
         "文件夹 %1 的路径含有 * 或 ?，压缩程序会把它当作通配符"},
        {"the temporary directory of this user does not exist", "该用户的临时目录不存在"},
        {"the temporary directory %1 is inside the folder to pack",
         "临时目录 %1 在要打包的文件夹里面"},
        {"the folder %1 contains no .exe file", "文件夹 %1 里没有 .exe 文件"},
        {"the folder %1 contains several programs; choose one with --main: %2",
         "文件夹 %1 里有多个程序；请用 --main 选择一个：%2"},
        {"the main program %1 is not inside the folder %2", "主程序 %1 不在文件夹 %2 里面"},
        {"the folder %1 contains no file %2", "文件夹 %1 里没有文件 %2"},
        {"the main program %1 is not an .exe file", "主程序 %1 不是 .exe 文件"},
        {"the produced file could not start %1: on Windows that is the name of a device",
         "成品无法启动 %1：在 Windows 上这是设备的名字"},
        {"the produced file could not start %1: the main program's name must not have control "
         "characters, any of \" * : < > ? \\ |, or a % before a digit",
         "成品无法启动 %1：主程序的名字不能含有控制字符、\" * : < > ? \\ | 或者数字前的 %"},
        {"the executable cannot be named %1: Windows does not allow that name",
         "成品不能命名为 %1：Windows 不允许这个名字"},
        {"the icon file %1 is larger than 64 MiB", "图标文件 %1 大于 64 MiB"},
        {"the icon file %1 cannot be read", "无法读取图标文件 %1"},
        {"the icon file %1 does not exist", "图标文件 %1 不存在"},
        {"--name %1 and --output %2 contradict each other", "--name %1 与 --output %2 互相矛盾"},
        {"the output directory %1 is inside the folder to pack",
         "输出目录 %1 在要打包的文件夹里面"},
        {"cannot create the output directory %1", "无法创建输出目录 %1"},
        {"cannot write to the output directory %1: %2", "无法写入输出目录 %1：%2"},
        {"cannot replace the output file %1", "无法替换输出文件 %1"},
        {"cannot create a private temporary directory: %1", "无法创建私有的临时目录：%1"},
        {"the system does not use %1 as the temporary directory", "系统没有把 %1 用作临时目录"},
        {"another job is making %1", "另一个任务正在制作 %1"},
        {"another job is making %1; if there is none, remove %2",
         "另一个任务正在制作 %1；如果没有这样的任务，请删除 %2"},
        {"cannot lock the output %1: %2", "无法锁定输出文件 %1：%2"},
        {"cannot create the directory %1", "无法创建目录 %1"},

        {"the job failed; see the lines above", "任务失败；请看上面的内容"},
        {"the archiver did not finish: the archive is incomplete, and %1 was not made; did the "
         "computer sleep, or was the archiver stopped?",
         "压缩程序没有完成：压缩包不完整，没有生成 %1；电脑是否睡眠过，或者压缩程序被停止了？"},
        {"%1 could not be written in full; is the disk full?", "%1 没有完整写入；磁盘是否已满？"},
        {"%1 was not made: it would not start: %2", "没有生成 %1：它不能启动：%2"},
        {"cannot move the executable to %1: %2", "无法把成品移动到 %1：%2"},
        {"%1 has %2 bytes; Windows does not start program files of 4 GiB or more",
         "%1 有 %2 字节；Windows 不能启动 4 GiB 或更大的程序文件"},
        {"the executable was not checked: this build cannot read produced files",
         "没有检查成品：这个版本不能读取成品"},
        {"interrupted; %1 was not made", "已中断；没有生成 %1"},

        {"cannot open %1: %2", "无法打开 %1：%2"},
        {"%1: complete, all checksums are right", "%1：完整，所有校验和都正确"},
        {"this build of kestrelpack-cli cannot read produced files",
         "这个版本的 kestrelpack-cli 不能读取成品"},

        {"Unknown option '%1'.", "未知的选项“%1”。"},
        {"Unknown options: %1.", "未知的选项：%1。"},
        {"Missing value after '%1'.", "“%1”后面缺少值。"},
        {"Unexpected value after '%1'.", "“%1”后面不应有值。"},
        {"the archive needs something that the self-extractor does not have, for example a link, "
         "encryption or another method",
         "压缩包需要自解压模块没有的功能，例如链接、加密或其他压缩方法"},
        {"a file name is not allowed on Windows, or two names are the same there",
         "有文件名不被 Windows 允许，或者有两个名字在 Windows 上相同"},
        {"there is not enough memory", "内存不足"},
        {"the file cannot be read", "无法读取该文件"},
        {"a file cannot be written", "无法写入文件"},
        {"the disk is full", "磁盘已满"},
        {"the archive does not contain the program to run", "压缩包里没有要运行的程序"},
        {"the file is damaged or incomplete, or is not a produced file",
         "文件已损坏或不完整，或者不是成品"},
    };
    return texts;
}
