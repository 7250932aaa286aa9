// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/helpers/pe/petest.h"
#include "tests/helpers/self-extractor/settingsimage.h"

#include <QFile>

namespace {

struct Program
{
    const char *name;
    petest::Recipe recipe;
};

// The programs are small, because a fuzzer changes short inputs faster.
const Program programs[] = {
    {"plain", {}},
    {"32-bits", {.pe32Plus = false}},
    {"no-resources", {.resources = false, .icons = false, .overlay = 99}},
    {"no-icons", {.icons = false, .overlay = 77}},
    {"reloc-behind", {.relocBehind = true, .overlay = 500}},
    {"foreign-behind", {.foreignBehind = true, .overlay = 500}},
    {"no-header-room", {.foreignBehind = true, .headerRoom = false}},
    {"slack", {.slack = 3000}},
    {"certificate", {.certificate = true, .overlay = 200}},
    {"symbols", {.symbols = true, .debugDirectory = true, .overlay = 64}},
    {"debug-size",
     {.resources = false,
      .icons = false,
      .debugDirectory = true,
      .debugSize = 28 * 20,
      .overlay = 64}},
};

// Texts of settings, for images that have them as their only resource.
struct Image
{
    const char *name;
    const char *settings;
};

const Image images[] = {
    {"no-settings", ""},
    {"settings", "Title=\"a\"\nArguments=\"-x \"y\"\"\nWorkingFolder=\"caller\"\nSilent=\"1\"\n"},
    {"program-in-a-folder", "Program=\"data/text.txt\"\nFolder=\"app\"\nWorkingFolder=\"exe\"\n"},
    {"damaged-settings", "Program=\"../main.exe\"\n"},
};

bool writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

} // namespace

// make-programs FOLDER IMAGES: writes made-up Windows programs into FOLDER, and images for produced
// files into IMAGES, one in each file.
int main(int argc, char **argv)
{
    if (argc != 3) {
        return 2;
    }
    for (const Program &program : programs) {
        if (!writeFile(QString::fromLocal8Bit(argv[1]) + u'/' + QLatin1String(program.name),
                       petest::makeProgram(program.recipe))) {
            return 1;
        }
    }
    for (const Image &image : images) {
        if (!writeFile(QString::fromLocal8Bit(argv[2]) + u'/' + QLatin1String(image.name),
                       settingsimage::withText(image.settings))) {
            return 1;
        }
    }
    return 0;
}
