// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "app/application.h"

int main(int argc, char *argv[])
{
    return runApplication(argc, argv);
}
