// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

// The terminal program with other helpers. kestrelpack-cli uses nothing that it finds in the
// temporary directory, so tests cannot plant fakes for it. This program copies them from there into
// the job's private directory; everything else is kestrelpack-cli's own code.
//
// The main programs of these tests are no real ones, so nothing is made from them. Fake helpers make
// no real executable, so it is not checked, except that the environment variable KESTRELPACK_TEST_CHECK asks for it: "real" checks it as kestrelpack-cli does; "hang FILE" makes
// FILE and does not return.

#include "cli/program.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QThread>

#include <csignal>

namespace {

void copyHelpers(const QDir &from, const QDir &to)
{
    for (const char *name : {"7zr.exe", "7zS2.sfx", "ResourceHacker.exe", "temp_icon.ico"}) {
        const QFileInfo found(from.filePath(name));
        if ((found.isDir() && !to.mkdir(name))
            || (found.isFile() && !QFile::copy(found.filePath(), to.filePath(name)))) {
            qFatal("a helper could not be copied");
        }
    }
}

ProductCheck wantedCheck()
{
    const QString wanted = qEnvironmentVariable("KESTRELPACK_TEST_CHECK");
    if (wanted == "real") {
        return &checkProduct;
    }
    if (!wanted.startsWith("hang ")) {
        return {};
    }
    return [marker = wanted.section(' ', 1)](const QString &, bool) {
        QFile file(marker);
        if (!file.open(QIODevice::WriteOnly)) {
            qFatal("the marker could not be made");
        }
        file.close();
        QThread::sleep(3600);
        return QString();
    };
}

// As if the user pressed Ctrl-C at that moment.
void interruptBefore(const char *stage)
{
    if (qEnvironmentVariable("KESTRELPACK_TEST_INTERRUPT") == stage) {
        std::raise(SIGINT);
    }
}

} // namespace

int main(int argc, char *argv[])
{
    const QDir usual(QDir::tempPath());
    return runTerminalProgram(argc, argv,
                              {[usual](const QString &directory) {
                                   copyHelpers(usual, QDir(directory));
                                   interruptBefore("listing");
                               },
                               [](PreparedJob &) {
                                   interruptBefore("staging");
                                   return std::optional<Refusal>();
                               },
                               wantedCheck(),
                               wantedCheck() ? IconKeeper(&keepProductIcon) : IconKeeper()});
}
