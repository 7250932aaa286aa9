// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/start/blockreader.h"
#include "packaging/blockwriter.h"
#include "packaging/outputname.h"
#include "tests/fuzz/require.h"
#include "tests/fuzz/windowsnames.h"

using namespace sfx;

namespace {

// Keeps all characters: fromUtf16() would read some first characters as a byte order mark.
QString textOf(const Text &text)
{
    return QStringView(text.data(), static_cast<qsizetype>(text.size())).toString();
}

bool isWindowsName(const QString &name)
{
    return windowsnames::isName(name.toStdU16String());
}

// The template is filled step by step, so text in a name that looks like a placeholder is filled
// too; see tst_blockwriter. Qt accepts any digit as a placeholder's number, also a superscript one.
bool looksLikePlaceholder(const QString &name)
{
    for (qsizetype i = name.indexOf('%'); i >= 0; i = name.indexOf('%', i + 1)) {
        const qsizetype place = name.mid(i + 1, 1) == u"L" ? i + 2 : i + 1;
        if (place < name.size() && name[place].digitValue() >= 0) {
            return true;
        }
    }
    return false;
}

} // namespace

// The module can read the block that the packer writes for a program of this name.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QString program
        = QString::fromUtf8(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    const QString base = outputBaseName(program);
    const QByteArray bytes = configurationBlock(base, program).toUtf8();
    ConfigBlock block;
    std::size_t blockSize = 0;
    const auto bytesSize = static_cast<std::size_t>(bytes.size());
    const Status status = parseConfigBlock(bytes.constData(), bytesSize, block, blockSize);
    if (status == Status::Ok) {
        require(isWindowsName(textOf(block.runProgram)) && isWindowsName(textOf(block.folderName)),
                "whatever is packed, names are plain");
    }
    if (!isWindowsName(program) || looksLikePlaceholder(program)) {
        return 0;
    }
    require(status == Status::Ok && blockSize == bytesSize,
            "the module reads what the packer writes");
    require(textOf(block.runProgram) == program, "the program comes through");
    require(textOf(block.title) == base + QStringLiteral(" Portable"), "the title comes through");
    require(textOf(block.folderName) == (isWindowsName(base) ? base : QStringLiteral("app")),
            "the folder comes through, or is named app");
    require(block.progress && !block.silent, "progress is shown, and messages are");
    return 0;
}
