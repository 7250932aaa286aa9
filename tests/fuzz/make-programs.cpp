// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/helpers/pe/petest.h"

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

} // namespace

// make-programs FOLDER: writes made-up Windows programs into FOLDER, one in each file.
int main(int argc, char **argv)
{
    for (const Program &program : programs) {
        QFile file(QString::fromLocal8Bit(argc == 2 ? argv[1] : ".") + u'/'
                   + QLatin1String(program.name));
        const QByteArray bytes = petest::makeProgram(program.recipe);
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
            return 1;
        }
    }
    return 0;
}
