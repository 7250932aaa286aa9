// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/helpers/self-extractor/zstdarchive.h"

#include <QFile>

namespace {

bool writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

} // namespace

// make-archives ARCHIVES FRAMES: writes archives that the archiver does not make into ARCHIVES, and
// their packed streams into FRAMES.
int main(int argc, char **argv)
{
    if (argc != 3) {
        return 2;
    }
    const Tree tree{{QStringLiteral("main.exe"), "MZ a program"},
                    {QStringLiteral("code.dll"), noise(200, 1) + QByteArray(700, 'c')},
                    {QStringLiteral("data/text.txt"), QByteArray("a text, and ").repeated(30)}};
    const struct
    {
        const char *name;
        ZstdPacking packing;
    } archives[] = {
        {"zstd", {.frames = {.level = 19}}},
        {"zstd-filtered", {.isFiltered = true}},
        {"zstd-blocks", {.blockSize = 0}},
        {"zstd-frames", {.frameSize = 100, .hasSkippable = true, .frames = {.hasCheckSum = true}}},
        {"zstd-window", {.frames = {.windowLog = 10, .hasContentSize = false}}},
    };
    for (const auto &[name, packing] : archives) {
        const QByteArray content = tree.first() + *std::next(tree.begin());
        const QByteArray frames = zstdframes::framesOf(content, packing.frameSize, packing.frames);
        if (!writeFile(QFile::decodeName(argv[1]) + u'/' + QLatin1String(name),
                       packZstd(tree, packing))
            || !writeFile(QFile::decodeName(argv[2]) + u'/' + QLatin1String(name), frames)) {
            return 1;
        }
    }
    return 0;
}
