// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "cli/helptext.h"

#include "cli/options.h"

namespace {

constexpr int optionWidth = 25; // of the column with the names
constexpr int textWidth = 86;

const char englishStart[] = R"(Usage: kestrelpack-cli [options] FOLDER
       kestrelpack-cli inspect [--json] FILE
       kestrelpack-cli verify FILE
       kestrelpack-cli extract [--output DIR] FILE

Packs FOLDER, a folder with a Windows application, into one executable that unpacks itself and runs.
The commands read an executable that was made so: inspect shows what is in it, verify decodes all of it
and compares every checksum, extract unpacks it into a new folder.

Options:
)";

const char englishEnd[] = R"(
The executable's name comes from the main program: my.tool.exe in FOLDER gives DIR/my.exe. It replaces a file
of that name, but only when it is complete and checked.

Exit status: 0 the executable is complete, 1 the job failed, or the executable that was read would not start,
2 nothing was started: wrong usage, or another job is making the same file. If the job is interrupted, it
leaves nothing behind, and the exit status is 130 after Ctrl-C (on Windows 0xC000013A).
)";

const char chineseStart[] = R"(用法：kestrelpack-cli [选项] FOLDER
      kestrelpack-cli inspect [--json] FILE
      kestrelpack-cli verify FILE
      kestrelpack-cli extract [--output DIR] FILE

把 FOLDER（Windows 应用程序的文件夹）打包成一个会自行解压并运行的可执行文件。
三个命令读取这样的成品：inspect 显示其中的内容，verify 解码全部内容并核对每个校验和，
extract 把它解压到一个新文件夹。

选项：
)";

const char chineseEnd[] = R"(
成品的名字来自主程序：FOLDER 里的 my.tool.exe 得到 DIR/my.exe。成品只有在完整并通过检查之后，才会替换同名的旧文件。

退出状态：0 成品完整；1 任务失败，或者读取的成品不能启动；2 什么也没有开始：用法错误，或者另一个任务正在制作同一个文件。
任务中断时不留下任何文件，Ctrl-C 之后的退出状态是 130（在 Windows 上是 0xC000013A）。
)";

QString namesOf(const OptionInfo &option)
{
    const QString shortName = option.shortName ? QStringLiteral("-%1, ").arg(option.shortName)
                                               : QStringLiteral("    ");
    const QString value = *option.valueName ? QStringLiteral(" %1").arg(option.valueName)
                                            : QString();
    return "  " + shortName + "--" + QLatin1String(option.name) + value;
}

// Names that are too long for their column get a line of their own.
QString paragraph(const OptionInfo &option, const QStringList &lines)
{
    const QString names = namesOf(option);
    const QString indent(optionWidth, ' ');
    const bool fits = names.size() < optionWidth - 1;
    return (fits ? names.leftJustified(optionWidth) : names + '\n' + indent)
        + lines.join('\n' + indent) + '\n';
}

} // namespace

QStringList wrapped(const QString &text, int width)
{
    QStringList lines;
    QString line;
    for (const QString &word : text.split(' ')) {
        if (!line.isEmpty() && line.size() + 1 + word.size() > width) {
            lines << line;
            line.clear();
        }
        line += line.isEmpty() ? word : ' ' + word;
    }
    return lines << line;
}

QString helpText(Language language)
{
    const bool isChinese = language == Language::Chinese;
    QString text = QString::fromUtf8(isChinese ? chineseStart : englishStart);
    for (const OptionInfo &option : options()) {
        text += paragraph(option,
                          isChinese ? QStringList(QString::fromUtf8(option.chinese))
                                    : wrapped(QString::fromLatin1(option.english), textWidth));
    }
    return text + QString::fromUtf8(isChinese ? chineseEnd : englishEnd);
}
