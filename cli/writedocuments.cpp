// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

// A tool of the build: writes the manual page and the completions into the folder that is its only
// argument.

#include "cli/shelldocuments.h"

#include <QDir>
#include <QFile>

#include <cstdio>

namespace {

bool write(const QString &path, const QString &text)
{
    QFile file(path);
    const QByteArray bytes = text.toUtf8();
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.flush();
}

} // namespace

int main(int argc, char *argv[])
{
    const QDir folder(argc == 2 ? QFile::decodeName(argv[1]) : QString());
    if (argc != 2 || !folder.mkpath(".")
        || !write(folder.filePath("kestrelpack-cli.1"), manualPage())
        || !write(folder.filePath("kestrelpack-cli.bash"), bashCompletion())
        || !write(folder.filePath("_kestrelpack-cli"), zshCompletion())) {
        std::fputs("the documents could not be written\n", stderr);
        return 1;
    }
    return 0;
}
