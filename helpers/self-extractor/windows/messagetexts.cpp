// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/messagetexts.h"

#include "helpers/self-extractor/start/sizetext.h"

namespace sfx {

namespace {

struct Message
{
    ExitCode code;
    const char16_t *english;
    const char16_t *chinese;
};

constexpr Message messages[] = {
    {ExitCode::Damaged, u"This file is damaged or incomplete. Please get a new copy of it.",
     u"此文件已损坏或不完整，请重新获取。"},
    {ExitCode::Unsupported, u"This file uses a packing method that it cannot unpack.",
     u"此文件使用了不支持的压缩方式，无法解压。"},
    {ExitCode::UnsafeName, u"This file holds a file name that is not allowed.",
     u"此文件中包含不允许的文件名。"},
    {ExitCode::NoMemory, u"There is not enough memory to unpack this file.",
     u"内存不足，无法解压此文件。"},
    {ExitCode::ReadFailed, u"This file cannot be read.", u"无法读取此文件。"},
    {ExitCode::NoFolder, u"A folder for the program cannot be made in the temporary folder.",
     u"无法在临时文件夹中创建程序文件夹。"},
    {ExitCode::WriteFailed, u"A file of the program cannot be written to the temporary folder.",
     u"无法将程序文件写入临时文件夹。"},
    {ExitCode::DiskFull, u"There is not enough free space in the temporary folder.",
     u"临时文件夹所在磁盘的可用空间不足。"},
    {ExitCode::ProgramMissing, u"The program to run is not in this file.",
     u"此文件中没有要运行的程序。"},
    {ExitCode::StartFailed, u"The program cannot be started.", u"无法启动程序。"},
    {ExitCode::Cancelled, u"Cancelled before the program was started.",
     u"操作已取消，程序未启动。"},
    {ExitCode::Interrupted, u"Interrupted before the program was started.",
     u"操作已中断，程序未启动。"},
};

} // namespace

const char16_t *messageText(ExitCode code, Language language)
{
    for (const Message &message : messages) {
        if (message.code == code) {
            return language == Language::Chinese ? message.chinese : message.english;
        }
    }
    return messageText(ExitCode::Damaged, language);
}

bool appendMissing(Text &text, std::uint64_t bytes, Language language)
{
    if (language == Language::Chinese) {
        return text.append(u"至少还需要 ") && appendSize(text, bytes) && text.append(u"。");
    }
    return text.append(u" At least ") && appendSize(text, bytes)
        && text.append(u" more is needed.");
}

} // namespace sfx
